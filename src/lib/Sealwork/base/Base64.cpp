#include <Sealwork/base/Base64.h>

#include <Sealwork/base/Base64Alphabet.h>

#include <algorithm>
#include <array>
#include <string>

namespace Sealwork {

namespace {

constexpr std::uint32_t invalid = 0xff000000;

constexpr auto values = []() {
    std::array<std::uint32_t, 256> table{};
    table.fill(invalid);
    for (std::uint32_t value = 0; value < base64Alphabet.size(); ++value)
        table[static_cast<unsigned char>(base64Alphabet[value])] = value;
    return table;
}();

/// The 24 bits of four characters; at least `invalid` when one is not of the alphabet.
std::uint32_t decodeGroup(const char* characters) {
    const auto value = [characters](int index) { return values[static_cast<unsigned char>(characters[index])]; };
    const std::uint32_t all = value(0) | value(1) | value(2) | value(3);
    return all >= invalid ? invalid : value(0) << 18 | value(1) << 12 | value(2) << 6 | value(3);
}

/// The last group of a line that does not hold a multiple of three bytes: one or two bytes, padded.
bool decodePaddedGroup(const char* characters, std::span<std::uint8_t> bytes) {
    std::array<char, 4> group{characters[0], characters[1], 'A', 'A'};
    if (bytes.size() == 2)
        group[2] = characters[2];
    else if (characters[2] != '=')
        return false;
    if (characters[3] != '=')
        return false;
    const std::uint32_t bits = decodeGroup(group.data());
    const std::uint32_t unusedBits = bytes.size() == 2 ? 0xff : 0xffff;
    if (bits >= invalid || (bits & unusedBits) != 0)
        return false;
    bytes[0] = static_cast<std::uint8_t>(bits >> 16);
    if (bytes.size() == 2)
        bytes[1] = static_cast<std::uint8_t>(bits >> 8);
    return true;
}

bool decodeLine(const char* characters, std::span<std::uint8_t> bytes) {
    std::size_t index = 0;
    for (; index + 3 <= bytes.size(); index += 3, characters += 4) {
        const std::uint32_t bits = decodeGroup(characters);
        if (bits >= invalid)
            return false;
        bytes[index] = static_cast<std::uint8_t>(bits >> 16);
        bytes[index + 1] = static_cast<std::uint8_t>(bits >> 8);
        bytes[index + 2] = static_cast<std::uint8_t>(bits);
    }
    return index == bytes.size() || decodePaddedGroup(characters, bytes.subspan(index));
}

/// The text without its white space, broken in lines of the standard length.
std::string withStandardLines(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / base64LineCharacters + 1);
    std::size_t column = 0;
    for (const char character : text) {
        if (character == ' ' || character == '\t' || character == '\r' || character == '\n')
            continue;
        lines += character;
        if (++column < base64LineCharacters)
            continue;
        lines += '\n';
        column = 0;
    }
    if (column > 0)
        lines += '\n';
    return lines;
}

/// Bytes that lines of the standard length hold, if they hold any.
std::size_t getByteCount(std::string_view lines) {
    const std::size_t lineCount = (lines.size() + base64LineCharacters) / (base64LineCharacters + 1);
    std::size_t padding = 0;
    if (lines.ends_with("=\n"))
        padding = lines.ends_with("==\n") ? 2 : 1;
    const std::size_t groupCount = (lines.size() - lineCount) / 4;
    return std::max(groupCount * 3, padding) - padding;
}

} // namespace

bool decodeBase64Lines(std::string_view lines, std::span<std::uint8_t> bytes) {
    if (lines.size() != base64LinesSize(bytes.size()))
        return false;
    while (!bytes.empty()) {
        const auto lineBytes = bytes.first(std::min(bytes.size(), base64LineBytes));
        const std::size_t lineSize = base64LinesSize(lineBytes.size());
        // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the sizes were compared above
        if (!decodeLine(lines.data(), lineBytes) || lines[lineSize - 1] != '\n')
            return false;
        lines.remove_prefix(lineSize);
        bytes = bytes.subspan(lineBytes.size());
    }
    return true;
}

std::optional<std::vector<std::uint8_t>> decodeBase64Text(std::string_view text) {
    const auto lines = withStandardLines(text);
    std::vector<std::uint8_t> bytes(getByteCount(lines));
    return decodeBase64Lines(lines, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace Sealwork
