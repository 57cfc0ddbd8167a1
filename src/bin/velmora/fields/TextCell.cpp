#include <velmora/fields/TextCell.h>

#include <Brindle/widgets/Theme.h>

#include <QLineEdit>

namespace Velmora {

QWidget* TextCell::create(QWidget* parent) const {
    auto* lineEdit = new QLineEdit(parent);
    lineEdit->setMaxLength(TextType::longestText);
    Brindle::theme.enrich(lineEdit);
    return lineEdit;
}

void TextCell::setValue(QWidget* editor, const QVariant& value) const {
    editorAs<QLineEdit>(editor).setText(value.toString());
}

QVariant TextCell::getValue(QWidget* editor) const {
    return editorAs<QLineEdit>(editor).text();
}

} // namespace Velmora
