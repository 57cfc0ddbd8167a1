#include <velmora/fields/ChoiceEditor.h>

#include <velmora/fields/StoredValue.h>

#include <Brindle/widgets/Theme.h>

#include <QJsonArray>
#include <QObject>

namespace Velmora {

QString ChoiceEditor::getExpectation() const {
    return QObject::tr("one of %1").arg(_items.join(QStringLiteral(", ")));
}

QJsonObject ChoiceEditor::getDescription() const {
    return {{"kind", "choice"}, {"items", QJsonArray::fromStringList(_items)}};
}

std::optional<QVariant> ChoiceEditor::toValue(const QString& text) const {
    const int place = _items.indexOf(text);
    return place >= 0 ? std::optional<QVariant>(place) : std::nullopt;
}

QComboBox* ChoiceEditor::create(QWidget* parent) const {
    auto* comboBox = new QComboBox(parent);
    comboBox->addItems(_items);
    Brindle::theme.enrich(comboBox);
    return comboBox;
}

QVariant ChoiceEditor::getValue(const QWidget* widget) const {
    return widgetAs<const QComboBox>(widget).currentIndex();
}

void ChoiceEditor::setValue(QWidget* widget, const QVariant& value) const {
    auto& comboBox = widgetAs<QComboBox>(widget);
    if (const auto place = readNumber(value); place && *place >= 0 && *place < comboBox.count())
        comboBox.setCurrentIndex(*place);
}

QString ChoiceEditor::getText(const QWidget* widget) const {
    return widgetAs<const QComboBox>(widget).currentText();
}

void ChoiceEditor::setText(QWidget* widget, const QString& text) const {
    auto& comboBox = widgetAs<QComboBox>(widget);
    comboBox.setCurrentIndex(comboBox.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

} // namespace Velmora
