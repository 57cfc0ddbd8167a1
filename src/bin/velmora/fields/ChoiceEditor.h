#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QComboBox>
#include <QStringList>

namespace Velmora {

/// One of some texts, chosen in a combo box and kept as its place among them.
class ChoiceEditor : public FieldEditor {
public:
    explicit ChoiceEditor(const QStringList& items) : _items(items) {}

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    /// Empty for a place that does not exist.
    QString toText(const QVariant& value) const override { return _items.value(value.toInt()); }
    std::optional<QVariant> toValue(const QString& text) const override;
    QComboBox* create(QWidget* parent) const override;
    QVariant getValue(const QWidget* widget) const override;
    /// A place that the combo box does not have is ignored.
    void setValue(QWidget* widget, const QVariant& value) const override;
    // The items of the combo box count, which may be others than its cell offers by now.
    QString getText(const QWidget* widget) const override;
    /// Nothing is chosen when no item has the text.
    void setText(QWidget* widget, const QString& text) const override;

private:
    const QStringList _items;
};

} // namespace Velmora
