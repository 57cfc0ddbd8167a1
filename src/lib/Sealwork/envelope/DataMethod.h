#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Sealwork {

/// Cipher of an envelope's data block, in CBC mode (NIST SP 800-38A) with PKCS#7 padding.
enum class DataMethod { Aes128Cbc, Aes256Cbc };

/// "aes128-cbc" or "aes256-cbc".
std::string_view getName(DataMethod method);
/// The method of that name.
std::optional<DataMethod> findDataMethod(std::string_view name);
/// Bytes.
std::size_t getKeySize(DataMethod method);

inline constexpr std::size_t cipherBlockSize = 16; ///< Bytes, of the initial value too.

} // namespace Sealwork
