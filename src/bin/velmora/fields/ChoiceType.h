#pragma once

#include <velmora/fields/FieldType.h>

#include <QStringList>

namespace Velmora {

/// One of some texts, kept as its place among them.
class ChoiceType : public FieldType {
public:
    explicit ChoiceType(const QStringList& items) : _items(items) {}

    const QStringList& getItems() const { return _items; }

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    /// Empty for a place that does not exist.
    QString toText(const QVariant& value) const override { return _items.value(value.toInt()); }
    std::optional<QVariant> toValue(const QString& text) const override;

private:
    const QStringList _items;
};

} // namespace Velmora
