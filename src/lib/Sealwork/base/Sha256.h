#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace Sealwork {

using Sha256Digest = std::array<std::uint8_t, 32>;

/// SHA-256 of FIPS 180-4.
Sha256Digest getSha256(std::span<const std::uint8_t> bytes);

/// What keys and signers are called by: the first 8 bytes of the SHA-256 of their encoding, 16 lower-case hexadecimal
/// digits.
std::string getShortId(const Sha256Digest& digest);
inline constexpr std::size_t shortIdDigits = 16;

} // namespace Sealwork
