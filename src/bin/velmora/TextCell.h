#pragma once

#include <velmora/CellEditor.h>

namespace Velmora {

/// Cells that hold a text of the user's own, entered in a line edit.
class TextCell : public CellEditor {
public:
    QWidget* create(QWidget* parent) const override;
    void setValue(QWidget* editor, const QVariant& value) const override;
    QVariant getValue(QWidget* editor) const override;
    /// True for every text that a line edit takes.
    bool canGive(const QString& text) const override;
};

} // namespace Velmora
