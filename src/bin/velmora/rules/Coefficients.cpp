#include <velmora/rules/Coefficients.h>

#include <velmora/rules/Common.h>
#include <velmora/rules/WhiteSpace.h>

#include <Brindle/core/Exception.h>

#include <charconv>

namespace Velmora {

namespace {

/// A decimal integer with an optional sign.
int toInteger(const std::string& coefficient) {
    std::string_view digits = coefficient;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        throw Brindle::withFields(Brindle::Fatal("Invalid coefficient"), {{"coefficient", coefficient}});
    }
    return value;
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

} // namespace Velmora
