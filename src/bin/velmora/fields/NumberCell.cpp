#include <velmora/fields/NumberCell.h>

#include <Brindle/widgets/Theme.h>

#include <QSpinBox>

namespace Velmora {

QWidget* NumberCell::create(QWidget* parent) const {
    auto* spinBox = new QSpinBox(parent);
    spinBox->setRange(_type.getMinimum(), _type.getMaximum());
    Brindle::theme.enrich(spinBox);
    return spinBox;
}

void NumberCell::setValue(QWidget* editor, const QVariant& value) const {
    editorAs<QSpinBox>(editor).setValue(value.toInt());
}

QVariant NumberCell::getValue(QWidget* editor) const {
    return editorAs<QSpinBox>(editor).value();
}

} // namespace Velmora
