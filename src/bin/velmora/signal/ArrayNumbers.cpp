#include <velmora/signal/ArrayNumbers.h>

#include <velmora/signal/NumberText.h>
#include <velmora/signal/TextNumbers.h>

#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace Velmora {

namespace {

using Brindle::asciiSpaces;
using Brindle::trimmed;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// The text with blanks for its comments, so that everything stays where it is.
std::string withoutCComments(std::string_view content) {
    std::string text(content);
    for (auto begin = text.find('/'); begin != text.npos; begin = text.find('/', begin + 1)) {
        const bool isLine = text.compare(begin, 2, "//") == 0;
        if (!isLine && text.compare(begin, 2, "/*") != 0)
            continue;
        const auto close = isLine ? text.find('\n', begin) : text.find("*/", begin + 2);
        const auto end = close == text.npos ? text.size() : close + (isLine ? 0 : 2);
        for (auto offset = begin; offset < end; ++offset) {
            if (text[offset] != '\n')
                text[offset] = ' ';
        }
    }
    return text;
}

/// Calls `take` with each text between commas and its line, in the list that stands between the offsets.
template <class Take>
void forEachItem(const NumberSource& source, std::string_view text, std::size_t begin, std::size_t end, Take take) {
    std::size_t line = Brindle::getLineNumber(source.content, begin);
    for (;;) {
        const auto comma = std::min(text.find(',', begin), end);
        const std::string_view piece = text.substr(begin, comma - begin);
        const auto blank = std::min(piece.find_first_not_of(asciiSpaces), piece.size());
        const auto linesBefore = std::ranges::count(piece.substr(0, blank), '\n');
        take(trimmed(piece, asciiSpaces), line + static_cast<std::size_t>(linesBefore), comma == end);
        if (comma == end)
            return;
        line += static_cast<std::size_t>(std::ranges::count(piece, '\n'));
        begin = comma + 1;
    }
}

/// Number of bits of the integer type that is named in a declaration; none when none is.
std::optional<int> getIntegerWidth(std::string_view declaration) {
    const std::string text = Brindle::toLower(declaration);
    struct Type {
        std::string_view name;
        int width;
    };
    static constexpr std::array<Type, 6> types{
        {{"int8_t", 8}, {"int16_t", 16}, {"int32_t", 32}, {"char", 8}, {"short", 16}, {"int", 32}}};
    const auto isNamed = [&text](const Type& type) { return text.find(type.name) != text.npos; };
    const auto type = std::ranges::find_if(types, isNamed);
    return type == types.end() || text.find("uint") != text.npos || text.find("unsigned") != text.npos
               ? std::nullopt
               : std::optional(type->width);
}

/// An integer literal of C, without its sign and suffix.
std::optional<double> parseCInteger(std::string_view text, std::optional<int> width) {
    int base = text.starts_with('0') && text.size() > 1 ? 8 : 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    const bool isNegative = base != 10 && width && value >> (*width - 1) == 1;
    return static_cast<double>(value) - (isNegative ? std::ldexp(1.0, *width) : 0.0);
}

/// A number of C with an optional sign.
std::optional<double> parseCNumber(std::string_view text, std::optional<int> width) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text = trimmed(text.substr(1), asciiSpaces);
    if (text.empty() || !(isDigit(text.front()) || text.front() == '.'))
        return std::nullopt;
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const bool isReal = !isHexadecimal && text.find_first_of(".eE") != text.npos;
    while (!text.empty() && std::string_view(isReal ? "fFlL" : "uUlL").find(text.back()) != std::string_view::npos)
        text.remove_suffix(1);
    const auto value = isReal ? parseReal(text) : parseCInteger(text, width);
    return value && isNegative ? -*value : value;
}

/// The grammar of JSON is narrower than that of other numbers.
std::optional<double> parseJsonNumber(std::string_view text) {
    std::string_view rest = text;
    if (rest.starts_with('-'))
        rest.remove_prefix(1);
    const auto digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
    const bool hasLeadingZero = digits > 1 && rest.starts_with('0');
    const bool hasBarePoint =
        digits < rest.size() && rest[digits] == '.' && (digits + 1 == rest.size() || !isDigit(rest[digits + 1]));
    return digits == 0 || hasLeadingZero || hasBarePoint ? std::nullopt : parseReal(text);
}

} // namespace

bool isCArray(std::string_view content) {
    const std::string text = withoutCComments(content);
    Brindle::TextLines lines(text);
    while (const auto line = lines.nextOrLast()) {
        if (withoutComment(*line).find('{') != line->npos)
            return true;
    }
    return false;
}

std::vector<double> readCNumbers(const NumberSource& source) {
    const std::string text = withoutCComments(source.content);
    const auto begin = text.find('{');
    const auto end = text.find_first_of("{}", begin + 1);
    if (end == text.npos)
        source.refuseAt("The closing brace is missing", begin);
    if (const auto other = text.find('{', begin + 1); other != text.npos)
        source.refuseAt("There should be one array in one pair of braces", other);
    const auto width = getIntegerWidth(std::string_view(text).substr(0, begin));
    std::vector<double> numbers;
    forEachItem(source, text, begin + 1, end, [&](std::string_view item, std::size_t line, bool isLast) {
        if (item.empty() && isLast)
            return; // behind a last comma
        const auto number = parseCNumber(item, width);
        if (!number)
            source.refuseNumber(item, line);
        numbers.push_back(*number);
    });
    return numbers;
}

std::vector<double> readJsonNumbers(const NumberSource& source) {
    const std::string_view text = source.content;
    const auto begin = text.find('[');
    const auto end = text.find(']', begin);
    if (end == text.npos)
        source.refuseAt("The closing bracket is missing", begin);
    if (const auto rest = text.find_first_not_of(asciiSpaces, end + 1); rest != text.npos)
        source.refuseAt("There should be one array of numbers and nothing behind it", rest);
    std::vector<double> numbers;
    if (trimmed(text.substr(begin + 1, end - begin - 1), asciiSpaces).empty())
        return numbers;
    forEachItem(source, text, begin + 1, end, [&](std::string_view item, std::size_t line, bool) {
        const auto number = parseJsonNumber(item);
        if (!number)
            source.refuseNumber(item, line);
        numbers.push_back(*number);
    });
    return numbers;
}

} // namespace Velmora
