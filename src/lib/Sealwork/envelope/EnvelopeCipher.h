#pragma once

// For the source files of this library only.

#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/envelope/DataMethod.h>

#include <cstdint>
#include <span>

namespace Sealwork {

enum class CipherDirection { Decipher = 0, Encipher = 1 }; ///< As OpenSSL numbers them.

/// A cipher of that method at the start of the data. Key and initial value must have the method's sizes. Throws Fatal
/// "Cryptography failure".
CipherContext startCipher(DataMethod method, std::span<const std::uint8_t> key, std::span<const std::uint8_t> initial,
                          CipherDirection direction);

inline constexpr std::size_t cipherChunkSize = 16384; ///< Bytes at a time: what the processor's first cache holds.

} // namespace Sealwork
