#pragma once

#include <Sealwork/keys/AsymmetricKey.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace Sealwork {

using Signature = std::array<std::uint8_t, 64>;

/// Public Ed25519 key (RFC 8032) of one whose scripts are trusted.
class SignerKey {
public:
    /// Reads a PEM public key. Throws what `readKeyFile` throws.
    static SignerKey load(const std::filesystem::path& filename);

    /// Short identity of the DER SubjectPublicKeyInfo.
    const std::string& getId() const { return _id; }
    bool verify(std::string_view message, const Signature& signature) const;

private:
    explicit SignerKey(AsymmetricKey key) : _key(std::move(key)), _id(_key.getId()) {}

    AsymmetricKey _key;
    std::string _id;
};

} // namespace Sealwork
