#pragma once

#include <Sealwork/base/SecureBuffer.h>
#include <Sealwork/envelope/DataMethod.h>

#include <array>
#include <cstdint>

namespace Sealwork {

/// What one envelope is enciphered with, and nothing else ever.
struct SessionKey {
    SecureBuffer key;                                  ///< As long as the data method wants.
    std::array<std::uint8_t, cipherBlockSize> initial; ///< Initial value of the CBC mode.

    /// Throws Fatal "No random numbers available".
    static SessionKey make(DataMethod method);
};

} // namespace Sealwork
