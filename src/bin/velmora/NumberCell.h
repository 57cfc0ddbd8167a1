#pragma once

#include <velmora/CellEditor.h>

namespace Velmora {

/// Cells that hold a decimal integer of a range, entered in a spin box.
class NumberCell : public CellEditor {
public:
    NumberCell(int minimum, int maximum) : _minimum(minimum), _maximum(maximum) {}

    QWidget* create(QWidget* parent) const override;
    void setValue(QWidget* editor, const QVariant& value) const override;
    QVariant getValue(QWidget* editor) const override;
    bool canGive(const QString& text) const override;

private:
    const int _minimum;
    const int _maximum;
};

} // namespace Velmora
