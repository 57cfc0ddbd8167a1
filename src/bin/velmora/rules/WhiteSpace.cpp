#include <velmora/rules/WhiteSpace.h>

#include <algorithm>
#include <array>

namespace Velmora {

namespace {

using namespace std::string_view_literals;

/// The separators beyond ASCII: U+0085, U+00A0, U+1680, U+2000 to U+200A, U+2028, U+2029, U+202F, U+205F and U+3000.
constexpr std::array wideSpaces{"\xC2\x85"sv,     "\xC2\xA0"sv,     "\xE1\x9A\x80"sv, "\xE2\x80\x80"sv,
                                "\xE2\x80\x81"sv, "\xE2\x80\x82"sv, "\xE2\x80\x83"sv, "\xE2\x80\x84"sv,
                                "\xE2\x80\x85"sv, "\xE2\x80\x86"sv, "\xE2\x80\x87"sv, "\xE2\x80\x88"sv,
                                "\xE2\x80\x89"sv, "\xE2\x80\x8A"sv, "\xE2\x80\xA8"sv, "\xE2\x80\xA9"sv,
                                "\xE2\x80\xAF"sv, "\xE2\x81\x9F"sv, "\xE3\x80\x80"sv};

/// Bytes of the white-space character at the beginning of the text; 0 when there is none.
std::size_t spaceLength(std::string_view text) {
    const char first = text.front();
    if (first == ' ' || (first >= '\t' && first <= '\r'))
        return 1;
    if (static_cast<unsigned char>(first) < 0x80)
        return 0;
    const auto space = std::ranges::find_if(wideSpaces, [text](auto candidate) { return text.starts_with(candidate); });
    return space == wideSpaces.end() ? 0 : space->size();
}

} // namespace

std::string simplified(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool blankPending = false;
    while (!text.empty()) {
        if (const std::size_t length = spaceLength(text); length > 0) {
            blankPending = !result.empty();
            text.remove_prefix(length);
            continue;
        }
        if (blankPending)
            result += ' ';
        blankPending = false;
        result += text.front();
        text.remove_prefix(1);
    }
    return result;
}

} // namespace Velmora
