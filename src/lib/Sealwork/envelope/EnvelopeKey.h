#pragma once

#include <Sealwork/keys/AsymmetricKey.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace Sealwork {

/// Private RSA key of a recipient, which opens envelopes.
class EnvelopeKey {
public:
    /// Reads a PEM private key; the passphrase is asked for when it is enciphered. Throws what `readKeyFile` and the
    /// source throw.
    static EnvelopeKey load(const std::filesystem::path& filename, const PassphraseSource& passphrase);

    /// Bytes of what `unwrap` takes.
    std::size_t getWrappedSize() const;
    /// The session key that was enciphered for this recipient (RSAES-PKCS1-v1_5 of RFC 8017 section 7.2); none when
    /// the bytes are anything else.
    std::optional<SecureBuffer> unwrap(std::span<const std::uint8_t> wrapped) const;

private:
    explicit EnvelopeKey(AsymmetricKey key) : _key(std::move(key)) {}

    AsymmetricKey _key;
};

} // namespace Sealwork
