#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QTextEdit>

namespace Velmora {

/// A list of coefficients, kept as the user typed it and written with ", " between its items. What an item says is not
/// looked at.
class CoefficientsEditor : public FieldEditor {
public:
    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    QString toText(const QVariant& value) const override;
    std::optional<QVariant> toValue(const QString& text) const override { return text; }
    QTextEdit* create(QWidget* parent) const override;
    QVariant getValue(const QWidget* widget) const override;
    /// As an edit of the user, which can be taken back.
    void setValue(QWidget* widget, const QVariant& value) const override;
    void forgetEdits(QWidget* widget) const override;
    /// As it was typed.
    QString getText(const QWidget* widget) const override { return getValue(widget).toString(); }
};

} // namespace Velmora
