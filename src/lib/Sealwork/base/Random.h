#pragma once

#include <cstdint>
#include <span>

namespace Sealwork {

/// Fills the bytes with random numbers that may become public (initial values, nonces). Throws Fatal "No random
/// numbers available" with the fields "operation" and "reason".
void fillRandom(std::span<std::uint8_t> bytes);

/// The same for bytes that stay secret (keys), from a generator of their own.
void fillSecretRandom(std::span<std::uint8_t> bytes);

} // namespace Sealwork
