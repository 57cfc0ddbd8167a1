#pragma once

#include <velmora/fields/CellEditor.h>
#include <velmora/fields/ChoiceType.h>

#include <QStringList>

namespace Velmora {

/// Cells that hold one of some texts, chosen in a combo box.
class ChoiceCell : public CellEditor {
public:
    explicit ChoiceCell(const QStringList& items) : _type(items) {}

    QWidget* create(QWidget* parent) const override;
    /// Nothing is chosen when no item has the value's text.
    void setValue(QWidget* editor, const QVariant& value) const override;
    QVariant getValue(QWidget* editor) const override;
    const FieldType& getType() const override { return _type; }

private:
    const ChoiceType _type;
};

} // namespace Velmora
