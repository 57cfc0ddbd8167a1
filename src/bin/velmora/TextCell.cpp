#include <velmora/TextCell.h>

#include <Brindle/Theme.h>

#include <QLineEdit>

namespace Velmora {

namespace {

constexpr int longestText = 32767; // characters

} // namespace

QWidget* TextCell::create(QWidget* parent) const {
    auto* lineEdit = new QLineEdit(parent);
    lineEdit->setMaxLength(longestText);
    Brindle::theme.enrich(lineEdit);
    return lineEdit;
}

void TextCell::setValue(QWidget* editor, const QVariant& value) const {
    editorAs<QLineEdit>(editor).setText(value.toString());
}

QVariant TextCell::getValue(QWidget* editor) const {
    return editorAs<QLineEdit>(editor).text();
}

bool TextCell::canGive(const QString& text) const {
    return text.size() <= longestText;
}

} // namespace Velmora
