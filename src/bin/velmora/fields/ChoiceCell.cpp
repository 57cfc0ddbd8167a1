#include <velmora/fields/ChoiceCell.h>

#include <Brindle/widgets/Theme.h>

#include <QComboBox>

namespace Velmora {

QWidget* ChoiceCell::create(QWidget* parent) const {
    auto* comboBox = new QComboBox(parent);
    comboBox->addItems(_type.getItems());
    Brindle::theme.enrich(comboBox);
    return comboBox;
}

void ChoiceCell::setValue(QWidget* editor, const QVariant& value) const {
    auto& comboBox = editorAs<QComboBox>(editor);
    comboBox.setCurrentIndex(comboBox.findText(value.toString(), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

QVariant ChoiceCell::getValue(QWidget* editor) const {
    return editorAs<QComboBox>(editor).currentText();
}

} // namespace Velmora
