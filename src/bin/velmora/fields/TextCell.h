#pragma once

#include <velmora/fields/CellEditor.h>
#include <velmora/fields/TextType.h>

namespace Velmora {

/// Cells that hold a text of the user's own, entered in a line edit.
class TextCell : public CellEditor {
public:
    QWidget* create(QWidget* parent) const override;
    void setValue(QWidget* editor, const QVariant& value) const override;
    QVariant getValue(QWidget* editor) const override;
    const FieldType& getType() const override { return _type; }

private:
    const TextType _type;
};

} // namespace Velmora
