#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QLineEdit>

namespace Velmora {

/// A line of text of the user's own.
class TextEditor : public FieldEditor {
public:
    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    std::optional<QVariant> toValue(const QString& text) const override;
    QLineEdit* create(QWidget* parent) const override;
    QVariant getValue(const QWidget* widget) const override;
    void setValue(QWidget* widget, const QVariant& value) const override;
};

} // namespace Velmora
