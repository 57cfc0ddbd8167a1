#include <velmora/fields/StoredValue.h>

#include <algorithm>
#include <limits>

namespace Velmora {

std::optional<QString> readText(const QVariant& value) {
    const bool isText = !value.isValid() || value.type() == QVariant::String;
    return isText ? std::optional(value.toString()) : std::nullopt;
}

std::optional<int> readNumber(const QVariant& value) {
    if (!value.isValid())
        return 0;
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    using Limits = std::numeric_limits<int>;
    return isNumber ? std::optional(static_cast<int>(std::clamp<qlonglong>(number, Limits::min(), Limits::max())))
                    : std::nullopt;
}

std::optional<double> readDecimal(const QVariant& value) {
    if (!value.isValid())
        return 0;
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace Velmora
