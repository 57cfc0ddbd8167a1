#pragma once

#include <velmora/fields/FieldType.h>

namespace Velmora {

/// A list of coefficients, kept as the user typed it and written with ", " between its items. What an item says is not
/// looked at.
class CoefficientsType : public FieldType {
public:
    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    QString toText(const QVariant& value) const override;
    std::optional<QVariant> toValue(const QString& text) const override { return text; }
};

} // namespace Velmora
