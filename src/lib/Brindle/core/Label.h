#pragma once

#include <concepts>
#include <string>

namespace Brindle {

/// "true" or "false".
std::string getLabel(std::same_as<bool> auto value) {
    return value ? "true" : "false";
}

/// Decimal digits, with a minus sign when negative.
template <std::integral I>
requires(!std::same_as<I, bool>) std::string getLabel(I value) {
    return std::to_string(value);
}

/// Plain decimal with at least one digit after the point and never an exponent, whatever the locale: "0.5", "20.0". As
/// many digits as are needed to read the same number back. Infinities and NaN are "inf", "-inf" and "nan".
std::string getLabel(double value);

} // namespace Brindle
