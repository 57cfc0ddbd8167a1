#pragma once

#include <velmora/fields/FieldType.h>

namespace Velmora {

/// A number of a range with some digits after the point, such as "0.5".
class DecimalType : public FieldType {
public:
    /// `decimals` is the most digits after the point.
    DecimalType(double minimum, double maximum, int decimals)
        : _minimum(minimum), _maximum(maximum), _decimals(decimals) {}

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    QString toText(const QVariant& value) const override;
    std::optional<QVariant> toValue(const QString& text) const override;

private:
    const double _minimum;
    const double _maximum;
    const int _decimals;
};

} // namespace Velmora
