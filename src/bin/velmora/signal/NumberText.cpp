#include <velmora/signal/NumberText.h>

#include <array>
#include <charconv>
#include <cmath>

namespace Velmora {

namespace {

/// `from_chars` takes no plus sign.
std::string_view withoutPlus(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    return text;
}

template <class Number>
std::optional<Number> parse(std::string_view text) {
    text = withoutPlus(text);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

template <class... Format>
std::string toText(double value, Format... format) {
    std::array<char, 400> text{}; // the largest number has 309 digits
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value, format...).ptr};
}

} // namespace

std::optional<double> parseReal(std::string_view text) {
    const auto value = parse<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

bool looksLikeNumber(std::string_view text) {
    const std::size_t start = text.find_first_not_of("+-.");
    const bool beginsWithDigit = start != text.npos && text[start] >= '0' && text[start] <= '9';
    return beginsWithDigit || parse<double>(text).has_value();
}

std::optional<int> parseInteger(std::string_view text) {
    return parse<int>(text);
}

std::string getRealText(double value) {
    return toText(value);
}

std::string getFixedText(double value, int digits) {
    return toText(value, std::chars_format::fixed, digits);
}

} // namespace Velmora
