#pragma once

#include <Brindle/core/Exception.h>

#include <QJsonObject>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <optional>

namespace Velmora {

/// A kind of value that a field of a form or a cell of a table can hold: the values as a form keeps them in the
/// settings, the texts that stand for them in configurations and in cells, and the widget that they are entered in.
/// Whatever takes a widget throws Brindle::InternalError "Should not be here" for one of another kind.
class FieldEditor {
public:
    FieldEditor() = default;
    FieldEditor(const FieldEditor&) = delete;
    FieldEditor& operator=(const FieldEditor&) = delete;
    virtual ~FieldEditor() = default;

    /// What a user should write: "a whole number from 3 to 56".
    virtual QString getExpectation() const = 0;
    /// The same for a program: its "kind" and what limits it.
    virtual QJsonObject getDescription() const = 0;
    /// The one text that stands for a value.
    virtual QString toText(const QVariant& value) const { return value.toString(); }
    /// The value that a text stands for; nothing when it cannot be held.
    virtual std::optional<QVariant> toValue(const QString& text) const = 0;
    bool canHold(const QString& text) const { return toValue(text).has_value(); }

    /// A new widget, owned by the parent.
    virtual QWidget* create(QWidget* parent) const = 0;
    /// What the user entered.
    virtual QVariant getValue(const QWidget* widget) const = 0;
    /// Shows a value that was stored. An absent one is empty or 0, a number outside the range becomes its nearest end;
    /// what cannot be meant is ignored.
    virtual void setValue(QWidget* widget, const QVariant& value) const = 0;
    /// The same as texts; one that cannot be held is ignored.
    virtual QString getText(const QWidget* widget) const { return toText(getValue(widget)); }
    virtual void setText(QWidget* widget, const QString& text) const {
        if (const auto value = toValue(text))
            setValue(widget, *value);
    }

    /// What the widget shows cannot be taken back in it.
    virtual void forgetEdits(QWidget*) const {}

protected:
    template <class Widget, class Base>
    static Widget& widgetAs(Base* widget) {
        if (auto* wanted = qobject_cast<Widget*>(widget))
            return *wanted;
        throw Brindle::located(Brindle::InternalError("Should not be here"), BRINDLE_HERE);
    }
};

} // namespace Velmora
