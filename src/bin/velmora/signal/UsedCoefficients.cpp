#include <velmora/signal/UsedCoefficients.h>

#include <velmora/rules/Coefficients.h>

#include <charconv>
#include <cmath>
#include <cstdint>

namespace Velmora {

namespace {

double toNumber(std::string_view literal, unsigned width) {
    std::string_view digits = literal.substr(2, literal.size() - 3); // between x" and "
    constexpr std::size_t widest = 16;                               // digits of 64 bits
    digits.remove_prefix(digits.size() - std::min(digits.size(), widest));
    std::uint64_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    value &= (std::uint64_t{1} << width) - 1;
    const bool isNegative = value >> (width - 1) != 0;
    return static_cast<double>(value) - (isNegative ? std::ldexp(1.0, static_cast<int>(width)) : 0.0);
}

} // namespace

std::vector<double> getUsedCoefficients(const std::vector<std::string>& list, unsigned width) {
    std::vector<double> used;
    for (const std::string& coefficient : list) {
        const std::string aggregate = renderCoefficients({coefficient}, normalizedCoefficientWidth(width));
        used.push_back(toNumber(std::string_view(aggregate).substr(1, aggregate.size() - 2), width));
    }
    return used;
}

} // namespace Velmora
