#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace Velmora {

/// Bits that a coefficient can have.
constexpr unsigned widestCoefficient = 32;

/// How real numbers become integers of a width.
struct Scaling {
    enum class Kind {
        Full,   ///< By the largest factor with which every rounded value fits.
        Power,  ///< By the largest power of two of that kind.
        Factor, ///< By the given one.
    };
    Kind kind = Kind::Full;
    double factor = 1; ///< Greater than 0.
};

/// "full", "power", "2^N" with an integer N, or a number greater than 0. Throws Brindle::InvalidRequest for another
/// text.
Scaling parseScaling(std::string_view text);

/// Integers in place of real numbers.
struct ScaledCoefficients {
    std::vector<int> coefficients;
    double scale = 1;        ///< What the numbers were multiplied by before they were rounded.
    double largestError = 0; ///< Largest rounding error, in units of the coefficients: 0.5 at most.
};

/// True when all of them are integers that `width` bits in two's complement hold.
bool areWholeAndFit(const std::vector<double>& numbers, unsigned width);

/// Scales, then rounds to nearest, halves away from zero. The width is 1 to `widestCoefficient` bits. Throws
/// Brindle::Critical with the field "coefficient" when the given factor makes one too large.
ScaledCoefficients scaleCoefficients(const std::vector<double>& numbers, unsigned width, const Scaling& scaling);

/// What an import makes of numbers: integers that fit stay as they are unless a scaling is asked for, all others are
/// scaled, by default as far as the width allows.
ScaledCoefficients importCoefficients(const std::vector<double>& numbers, unsigned width,
                                      const std::optional<Scaling>& scaling);

} // namespace Velmora
