#include <velmora/fields/TextEditor.h>

#include <velmora/fields/StoredValue.h>

#include <Brindle/widgets/Theme.h>

#include <QObject>

namespace Velmora {

namespace {

constexpr int longestText = 32767; // characters; the most that a line edit takes

} // namespace

QString TextEditor::getExpectation() const {
    return QObject::tr("a text of at most %1 characters").arg(longestText);
}

QJsonObject TextEditor::getDescription() const {
    return {{"kind", "text"}, {"longest", longestText}};
}

std::optional<QVariant> TextEditor::toValue(const QString& text) const {
    return text.size() <= longestText ? std::optional<QVariant>(text) : std::nullopt;
}

QLineEdit* TextEditor::create(QWidget* parent) const {
    auto* lineEdit = new QLineEdit(parent);
    lineEdit->setMaxLength(longestText);
    Brindle::theme.enrich(lineEdit);
    return lineEdit;
}

QVariant TextEditor::getValue(const QWidget* widget) const {
    return widgetAs<const QLineEdit>(widget).text();
}

void TextEditor::setValue(QWidget* widget, const QVariant& value) const {
    auto& lineEdit = widgetAs<QLineEdit>(widget);
    const auto text = readText(value);
    if (!text)
        return;
    if (text->isEmpty())
        lineEdit.clear(); // which can be undone
    else
        lineEdit.setText(*text);
}

} // namespace Velmora
