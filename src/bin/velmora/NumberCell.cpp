#include <velmora/NumberCell.h>

#include <Brindle/Theme.h>

#include <QSpinBox>

namespace Velmora {

QWidget* NumberCell::create(QWidget* parent) const {
    auto* spinBox = new QSpinBox(parent);
    spinBox->setRange(_minimum, _maximum);
    Brindle::theme.enrich(spinBox);
    return spinBox;
}

void NumberCell::setValue(QWidget* editor, const QVariant& value) const {
    editorAs<QSpinBox>(editor).setValue(value.toInt());
}

QVariant NumberCell::getValue(QWidget* editor) const {
    return editorAs<QSpinBox>(editor).value();
}

bool NumberCell::canGive(const QString& text) const {
    const int number = text.toInt();
    return QString::number(number) == text && number >= _minimum && number <= _maximum;
}

} // namespace Velmora
