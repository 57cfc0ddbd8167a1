#pragma once

#include <velmora/fields/CellEditor.h>
#include <velmora/fields/NumberType.h>

namespace Velmora {

/// Cells that hold a decimal integer of a range, entered in a spin box.
class NumberCell : public CellEditor {
public:
    NumberCell(int minimum, int maximum) : _type(minimum, maximum) {}

    QWidget* create(QWidget* parent) const override;
    void setValue(QWidget* editor, const QVariant& value) const override;
    QVariant getValue(QWidget* editor) const override;
    const FieldType& getType() const override { return _type; }

private:
    const NumberType _type;
};

} // namespace Velmora
