#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace Brindle {

/// True for an ASCII control character, line ends, tabulator and delete among them.
inline bool isControl(char character) {
    return (character >= 0 && character < ' ') || character == '\x7f';
}

/// What the C language calls white space.
inline constexpr std::string_view asciiSpaces = " \t\n\v\f\r";

/// What some editors begin a file with.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// The text without any of the blanks at its ends.
inline std::string_view trimmed(std::string_view text, std::string_view blanks = " \t") {
    const auto begin = text.find_first_not_of(blanks);
    return begin == text.npos ? std::string_view() : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// The text with its ASCII letters in lower case.
inline std::string toLower(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

/// The UTF-8 text, cut so that it has `longest` characters at most, the last three of them points then.
std::string shortened(std::string_view text, std::size_t longest);

/// What a message quotes, between single quotes and so short that the message can be read to its end.
std::string inQuotes(std::string_view text);

/// The text with a question mark for every control character, as it can be shown on a terminal whoever wrote it.
std::string getPrintable(std::string_view text);

} // namespace Brindle
