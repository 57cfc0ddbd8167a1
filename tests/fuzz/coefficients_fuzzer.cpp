#include <fuzz/Property.h>

#include <velmora/rules/Coefficients.h>
#include <velmora/rules/Common.h>
#include <velmora/rules/WhiteSpace.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <cstdint>

namespace {

/// Every literal is hexadecimal, of the width unless it was given as one.
void checkRendered(std::string_view aggregate, const std::vector<std::string>& coefficients, unsigned long width) {
    require(aggregate.starts_with('(') && aggregate.ends_with(')'), "an aggregate stands in parentheses");
    aggregate = aggregate.substr(1, aggregate.size() - 2);
    for (const std::string& coefficient : coefficients) {
        const std::string literal(aggregate.substr(0, aggregate.find(", ")));
        require(Velmora::isHexadecimal(literal), "every literal is hexadecimal");
        require(literal == coefficient || literal.size() == width / 4 + 3, "a rendered number has the width");
        aggregate.remove_prefix(std::min(literal.size() + 2, aggregate.size()));
    }
    require(aggregate.empty(), "one literal a coefficient");
}

} // namespace

/// The first byte of the input gives the coefficient width, the rest is the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const unsigned long width = Velmora::normalizedCoefficientWidth(data[0] % 64U + 1U);
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::vector<std::string> coefficients = Velmora::parseCoefficients(text);
    for (const std::string& coefficient : coefficients) {
        require(!coefficient.empty() && Velmora::simplified(coefficient) == coefficient, "white space is collapsed");
        require(coefficient.find_first_of(";,\n") == coefficient.npos, "separators separate");
    }
    try {
        checkRendered(Velmora::renderCoefficients(coefficients, width), coefficients, width);
    } catch (const Brindle::Fatal& exception) {
        const bool isNoNumber = exception.getMessage() == "Invalid coefficient";
        require(isNoNumber || exception.getMessage() == "Value too high for specified width", "the refusal is known");
        require(!isNoNumber || std::ranges::count(coefficients, exception.getField("coefficient")) > 0,
                "the refusal names a coefficient of the list");
    }
    return 0;
}
