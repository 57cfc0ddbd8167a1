#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Velmora {

/// The pieces of a coefficient list, separated by ";", "," or line breaks, with their white space collapsed; empty ones
/// are dropped. What a piece says is not looked at.
std::vector<std::string> parseCoefficients(std::string_view text);

/// A coefficient width in bits, rounded up to whole hexadecimal digits: the next multiple of 4.
constexpr unsigned long normalizedCoefficientWidth(unsigned long width) {
    return (width + 3) / 4 * 4;
}

/// The VHDL aggregate of the coefficients, such as `(x"02d", x"02a")`: a hexadecimal literal stays as it is, a decimal
/// integer becomes one of `width` bits (a multiple of 4). Throws Brindle::Fatal "Invalid coefficient" with the field
/// "coefficient" for anything else, and what `getHexadecimal` throws.
std::string renderCoefficients(const std::vector<std::string>& coefficients, unsigned long width);

/// A line for every decimal coefficient that is no signed number of `width` bits: the rendering takes its lowest bits
/// or refuses it. What is no decimal integer is passed over. The lines name the field of the width by its label.
std::vector<std::string> getRangeRemarks(const std::vector<std::string>& coefficients, unsigned long width,
                                         const std::string& widthLabel = "Coefficient width");

} // namespace Velmora
