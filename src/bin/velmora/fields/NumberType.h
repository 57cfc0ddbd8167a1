#pragma once

#include <velmora/fields/FieldType.h>

namespace Velmora {

/// A whole number of a range, written in decimal digits without leading zeros.
class NumberType : public FieldType {
public:
    NumberType(int minimum, int maximum) : _minimum(minimum), _maximum(maximum) {}

    int getMinimum() const { return _minimum; }
    int getMaximum() const { return _maximum; }

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    std::optional<QVariant> toValue(const QString& text) const override;

private:
    const int _minimum;
    const int _maximum;
};

} // namespace Velmora
