#include <velmora/fields/NumberEditor.h>

#include <velmora/fields/StoredValue.h>

#include <Brindle/widgets/Theme.h>

#include <QObject>

namespace Velmora {

QString NumberEditor::getExpectation() const {
    return QObject::tr("a whole number from %1 to %2").arg(_minimum).arg(_maximum);
}

QJsonObject NumberEditor::getDescription() const {
    return {{"kind", "number"}, {"minimum", _minimum}, {"maximum", _maximum}};
}

std::optional<QVariant> NumberEditor::toValue(const QString& text) const {
    const int number = text.toInt();
    const bool holds = QString::number(number) == text && number >= _minimum && number <= _maximum;
    return holds ? std::optional<QVariant>(number) : std::nullopt;
}

QSpinBox* NumberEditor::create(QWidget* parent) const {
    auto* spinBox = new QSpinBox(parent);
    spinBox->setRange(_minimum, _maximum);
    Brindle::theme.enrich(spinBox);
    return spinBox;
}

QVariant NumberEditor::getValue(const QWidget* widget) const {
    return widgetAs<const QSpinBox>(widget).value();
}

void NumberEditor::setValue(QWidget* widget, const QVariant& value) const {
    auto& spinBox = widgetAs<QSpinBox>(widget);
    if (const auto number = readNumber(value))
        spinBox.setValue(*number);
}

} // namespace Velmora
