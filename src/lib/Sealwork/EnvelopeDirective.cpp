#include <Sealwork/EnvelopeDirective.h>

#include <algorithm>

namespace Sealwork {

namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";

bool isWordCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

/// Takes the white space in front off; false when there is none.
bool skipWhiteSpace(std::string_view& text) {
    const auto begin = std::min(text.find_first_not_of(whiteSpace), text.size());
    text.remove_prefix(begin);
    return begin > 0;
}

/// Takes the text in front off; false when it is not there.
bool skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected))
        return false;
    text.remove_prefix(expected.size());
    return true;
}

bool endsWithWord(std::string_view text, std::string_view word) {
    if (!text.ends_with(word))
        return false;
    text.remove_suffix(word.size());
    return !text.empty() && !isWordCharacter(text.back());
}

} // namespace

bool isBlockDirective(std::string_view line) {
    skipWhiteSpace(line);
    if (!skip(line, "`"))
        return false;
    if (skip(line, "pragma") && !skipWhiteSpace(line))
        return false;
    if (!skip(line, "protect"))
        return false;
    line = line.substr(0, line.find_last_not_of(whiteSpace) + 1);
    if (line.empty() || isWordCharacter(line.front()))
        return false;
    return endsWithWord(line, "key_block") || endsWithWord(line, "data_block");
}

} // namespace Sealwork
