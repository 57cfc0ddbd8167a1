#pragma once

#include <velmora/fields/FieldType.h>

#include <Brindle/core/Exception.h>

#include <QString>
#include <QVariant>
#include <QWidget>

namespace Velmora {

/// How the cells of a column are filled in: one kind of editor and the values that it gives. Whatever takes an editor
/// throws Brindle::InternalError "Should not be here" for one of another kind.
class CellEditor {
public:
    CellEditor() = default;
    CellEditor(const CellEditor&) = delete;
    CellEditor& operator=(const CellEditor&) = delete;
    virtual ~CellEditor() = default;

    /// A new editor, owned by the parent.
    virtual QWidget* create(QWidget* parent) const = 0;
    /// Lets the editor show a cell's value.
    virtual void setValue(QWidget* editor, const QVariant& value) const = 0;
    /// What the user entered.
    virtual QVariant getValue(QWidget* editor) const = 0;
    /// What the cells can hold.
    virtual const FieldType& getType() const = 0;
    /// True for a text that an editor could have given.
    bool canGive(const QString& text) const { return getType().toValue(text).has_value(); }

protected:
    template <class Editor>
    static Editor& editorAs(QWidget* editor) {
        if (auto* wanted = qobject_cast<Editor*>(editor))
            return *wanted;
        throw Brindle::located(Brindle::InternalError("Should not be here"), BRINDLE_HERE);
    }
};

} // namespace Velmora
