#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

namespace Velmora {

/// A field of a form, whatever its kind.
struct FormField {
    QString key;     ///< In the form's settings group.
    QString label;   ///< As the user reads it.
    QString section; ///< Title of the section that it stands in; empty outside.
    QWidget* widget; ///< The editor's, in the form.
    std::shared_ptr<const FieldEditor> editor;
    std::optional<QVariant> resetValue; ///< Nothing when a reset leaves the field alone.

    /// What is stored.
    QVariant getValue() const { return editor->getValue(widget); }
    /// Takes what was stored; a value of no use is ignored.
    void setValue(const QVariant& value) const { editor->setValue(widget, value); }
};

} // namespace Velmora
