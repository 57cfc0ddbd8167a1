#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Sealwork {

/// Two lower-case hexadecimal digits a byte.
std::string toHex(std::span<const std::uint8_t> bytes);
/// The same in a buffer of twice as many bytes, so that the digits of a secret can stay in one that is overwritten.
void writeHex(std::span<const std::uint8_t> bytes, std::span<std::uint8_t> digits);

/// Fills `bytes` from exactly two hexadecimal digits a byte, of either case. False when the text is anything else; the
/// bytes are then unspecified.
bool fromHex(std::string_view text, std::span<std::uint8_t> bytes);

/// True when the text is that many hexadecimal digits, none of them upper-case.
bool isLowerHex(std::string_view text, std::size_t digitCount);

} // namespace Sealwork
