#pragma once

#include <string>
#include <vector>

namespace Velmora {

/// The coefficients of a filter's list as its hardware multiplies by them: hexadecimal literals and decimal integers
/// cut to `width` bits (1 to 32) in two's complement. Throws what `renderCoefficients` throws.
std::vector<double> getUsedCoefficients(const std::vector<std::string>& list, unsigned width);

} // namespace Velmora
