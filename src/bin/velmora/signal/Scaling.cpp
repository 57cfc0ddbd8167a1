#include <velmora/signal/Scaling.h>

#include <velmora/signal/NumberText.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Velmora {

namespace {

/// What a width holds: from -2^(width-1) to 2^(width-1) - 1.
class CoefficientRange {
public:
    explicit CoefficientRange(unsigned width) : _bound(std::ldexp(1.0, static_cast<int>(width) - 1)) {}

    bool holds(double value) const { return value >= -_bound && value < _bound; }

    /// The largest factor with which both, the greatest and the least of the numbers, still round to what fits.
    double getLargestFactor(double least, double greatest) const {
        const auto fits = [&](double factor) {
            return holds(std::round(least * factor)) && holds(std::round(greatest * factor));
        };
        constexpr double endless = std::numeric_limits<double>::max();
        double factor = endless;
        if (greatest > 0)
            factor = std::min(factor, (_bound - 0.5) / greatest);
        if (least < 0)
            factor = std::min(factor, (_bound + 0.5) / -least);
        if (factor == endless)
            return 1;         // nothing but zeros
        while (!fits(factor)) // the very bound rounds up
            factor = std::nextafter(factor, 0.0);
        return factor;
    }

private:
    const double _bound;
};

double getFactor(const std::vector<double>& numbers, const CoefficientRange& range, const Scaling& scaling) {
    if (scaling.kind == Scaling::Kind::Factor || numbers.empty())
        return scaling.factor;
    const auto [least, greatest] = std::ranges::minmax(numbers);
    const double largest = range.getLargestFactor(least, greatest);
    if (scaling.kind == Scaling::Kind::Full)
        return largest;
    int exponent = 0;
    std::frexp(largest, &exponent);
    return std::ldexp(1.0, exponent - 1);
}

[[noreturn]] void refuse(std::size_t index, double value, unsigned width) {
    throw Brindle::located(Brindle::Critical("A scaled coefficient does not fit " + Brindle::getLabel(width) +
                                             " bits, it would be " + getRealText(value)),
                           BRINDLE_HERE, {{"coefficient", Brindle::getLabel(index + 1)}});
}

} // namespace

Scaling parseScaling(std::string_view text) {
    if (text == "full")
        return {Scaling::Kind::Full};
    if (text == "power")
        return {Scaling::Kind::Power};
    const auto exponent = text.starts_with("2^") ? parseInteger(text.substr(2)) : std::nullopt;
    const auto factor = exponent ? std::ldexp(1.0, *exponent) : parseReal(text).value_or(0);
    if (!std::isfinite(factor) || factor <= 0) {
        throw Brindle::located(Brindle::InvalidRequest("The scaling '" + std::string(text) +
                                                       "' should be full, power, 2^N or a number greater than 0"),
                               BRINDLE_HERE);
    }
    return {Scaling::Kind::Factor, factor};
}

bool areWholeAndFit(const std::vector<double>& numbers, unsigned width) {
    const CoefficientRange range(width);
    return std::ranges::all_of(numbers,
                               [&](double number) { return number == std::trunc(number) && range.holds(number); });
}

ScaledCoefficients scaleCoefficients(const std::vector<double>& numbers, unsigned width, const Scaling& scaling) {
    const CoefficientRange range(width);
    ScaledCoefficients scaled;
    scaled.scale = getFactor(numbers, range, scaling);
    scaled.coefficients.reserve(numbers.size());
    for (const double number : numbers) {
        const double exact = number * scaled.scale;
        const double rounded = std::round(exact);
        if (!range.holds(rounded))
            refuse(scaled.coefficients.size(), rounded, width);
        scaled.largestError = std::max(scaled.largestError, std::abs(rounded - exact));
        scaled.coefficients.push_back(static_cast<int>(rounded));
    }
    return scaled;
}

ScaledCoefficients importCoefficients(const std::vector<double>& numbers, unsigned width,
                                      const std::optional<Scaling>& scaling) {
    if (!scaling && areWholeAndFit(numbers, width))
        return scaleCoefficients(numbers, width, {Scaling::Kind::Factor, 1});
    return scaleCoefficients(numbers, width, scaling.value_or(Scaling{}));
}

} // namespace Velmora
