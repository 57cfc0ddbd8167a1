#include <velmora/rules/Coefficients.h>

#include <velmora/rules/Common.h>
#include <velmora/rules/WhiteSpace.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>

#include <charconv>
#include <cstdint>
#include <optional>

namespace Velmora {

namespace {

/// A decimal integer with an optional sign.
std::optional<int> findInteger(std::string_view coefficient) {
    if (coefficient.starts_with('+') && !coefficient.starts_with("+-"))
        coefficient.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(coefficient.data(), coefficient.data() + coefficient.size(), value);
    const bool isInteger = error == std::errc() && end == coefficient.data() + coefficient.size();
    return isInteger ? std::optional(value) : std::nullopt;
}

int toInteger(const std::string& coefficient) {
    if (const auto value = findInteger(coefficient))
        return *value;
    throw Brindle::withFields(Brindle::Fatal("Invalid coefficient"), {{"coefficient", coefficient}});
}

} // namespace

std::vector<std::string> parseCoefficients(std::string_view text) {
    std::vector<std::string> coefficients;
    while (!text.empty()) {
        const auto end = text.find_first_of(";,\n");
        if (std::string piece = simplified(text.substr(0, end)); !piece.empty())
            coefficients.push_back(std::move(piece));
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return coefficients;
}

std::string renderCoefficients(const std::vector<std::string>& coefficients, unsigned long width) {
    std::string aggregate = "(";
    for (const std::string& coefficient : coefficients) {
        if (aggregate.size() > 1)
            aggregate += ", ";
        aggregate += isHexadecimal(coefficient) ? coefficient : getHexadecimal(toInteger(coefficient), width);
    }
    return aggregate + ")";
}

std::vector<std::string> getRangeRemarks(const std::vector<std::string>& coefficients, unsigned long width,
                                         const std::string& widthLabel) {
    const std::int64_t limit = std::int64_t{1} << (width - 1);
    const std::string range = " is beyond '" + widthLabel + "' " + Brindle::getLabel(width) + ", which holds " +
                              Brindle::getLabel(-limit) + " to " + Brindle::getLabel(limit - 1);
    std::vector<std::string> remarks;
    for (const std::string& coefficient : coefficients) {
        const auto value = findInteger(coefficient);
        if (value && (*value < -limit || *value >= limit))
            remarks.emplace_back("Coefficient ").append(coefficient).append(range);
    }
    return remarks;
}

} // namespace Velmora
