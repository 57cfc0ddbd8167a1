#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Sealwork {

/// Base64 of RFC 4648 section 4 (standard alphabet, padded) in lines of 76 characters, the last one possibly shorter,
/// each ended by one line feed. No bytes make no line.
inline constexpr std::size_t base64LineBytes = 57;
inline constexpr std::size_t base64LineCharacters = 76;

/// Number of characters that `byteCount` bytes take.
constexpr std::size_t base64Size(std::size_t byteCount) {
    return (byteCount + 2) / 3 * 4;
}

/// Number of characters, line feeds included, that `byteCount` bytes take in lines.
constexpr std::size_t base64LinesSize(std::size_t byteCount) {
    const std::size_t lineCount = (byteCount + base64LineBytes - 1) / base64LineBytes;
    return base64Size(byteCount) + lineCount;
}

/// Fills `bytes` from lines that hold exactly as many. False when the lines are not the one encoding of some bytes of
/// that size (wrong line length, foreign character, missing padding, stray bits); the bytes are then unspecified.
bool decodeBase64Lines(std::string_view lines, std::span<std::uint8_t> bytes);

/// The bytes of a base64 text with white space (blank, tab, carriage return, line feed) anywhere. None when it is
/// anything else, stray bits included.
std::optional<std::vector<std::uint8_t>> decodeBase64Text(std::string_view text);

} // namespace Sealwork
