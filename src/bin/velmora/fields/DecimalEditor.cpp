#include <velmora/fields/DecimalEditor.h>

#include <velmora/fields/StoredValue.h>

#include <Brindle/core/Label.h>
#include <Brindle/widgets/Theme.h>

#include <QObject>
#include <QRegularExpression>

#include <cmath>

namespace Velmora {

QString DecimalEditor::getExpectation() const {
    return QObject::tr("a multiple of %3 from %1 to %2")
        .arg(toText(_minimum), toText(_maximum), toText(std::pow(10, -_decimals)));
}

QJsonObject DecimalEditor::getDescription() const {
    return {{"kind", "decimal"}, {"minimum", _minimum}, {"maximum", _maximum}, {"decimals", _decimals}};
}

QString DecimalEditor::toText(const QVariant& value) const {
    return QString::fromStdString(Brindle::getLabel(value.toDouble()));
}

std::optional<QVariant> DecimalEditor::toValue(const QString& text) const {
    const QRegularExpression form(QStringLiteral("\\A-?[0-9]+(\\.[0-9]{1,%1})?\\z").arg(_decimals));
    const double number = text.toDouble();
    const bool holds = form.match(text).hasMatch() && number >= _minimum && number <= _maximum;
    return holds ? std::optional<QVariant>(number) : std::nullopt;
}

QDoubleSpinBox* DecimalEditor::create(QWidget* parent) const {
    auto* spinBox = new QDoubleSpinBox(parent);
    spinBox->setDecimals(_decimals);
    spinBox->setRange(_minimum, _maximum);
    spinBox->setSingleStep(_step);
    Brindle::theme.enrich(spinBox);
    return spinBox;
}

QVariant DecimalEditor::getValue(const QWidget* widget) const {
    return widgetAs<const QDoubleSpinBox>(widget).value();
}

void DecimalEditor::setValue(QWidget* widget, const QVariant& value) const {
    auto& spinBox = widgetAs<QDoubleSpinBox>(widget);
    if (const auto number = readDecimal(value))
        spinBox.setValue(*number);
}

} // namespace Velmora
