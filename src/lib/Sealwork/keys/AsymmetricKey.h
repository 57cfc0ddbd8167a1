#pragma once

#include <Sealwork/base/SecureBuffer.h>
#include <Sealwork/base/Sha256.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct evp_pkey_st;

namespace Sealwork {

/// Asked for the passphrase of a private key that is enciphered; what it throws passes through.
using PassphraseSource = std::function<SecureBuffer()>;

/// A public key, or a key pair, of any algorithm.
class AsymmetricKey {
public:
    static constexpr std::string_view publicBegin = "-----BEGIN PUBLIC KEY-----"; ///< First line of a PEM public key.
    static constexpr std::string_view publicEnd = "-----END PUBLIC KEY-----";     ///< Its last line.
    static constexpr std::size_t longestPassphrase = 1024; ///< Bytes of the longest one that `parsePrivate` takes.

    /// The key of a text that is one SubjectPublicKeyInfo in PEM (RFC 7468 section 13) and nothing else but white space
    /// behind it.
    static std::optional<AsymmetricKey> parsePublic(std::string_view pem);
    /// The first private key of a PEM text (RFC 7468 sections 10 and 11).
    static std::optional<AsymmetricKey> parsePrivate(std::string_view pem, const PassphraseSource& passphrase);

    /// New key pairs. Throw Fatal "Cryptography failure".
    static AsymmetricKey makeRsa(unsigned bits);
    static AsymmetricKey makeEd25519();

    /// "RSA", "ED25519" ...: the name by which the cryptography library knows the algorithm.
    bool isOfType(const char* algorithm) const;
    /// Of the modulus for RSA.
    unsigned getBits() const;
    /// SHA-256 of the DER SubjectPublicKeyInfo.
    Sha256Digest getDigest() const;
    /// Short identity of the same.
    std::string getId() const { return getShortId(getDigest()); }

    std::string getPublicPem() const;
    /// PKCS#8, not enciphered.
    SecureBuffer getPrivatePem() const;
    /// PKCS#8, enciphered under the passphrase (PBES2 of RFC 8018 with AES-256-CBC), which is at most
    /// `longestPassphrase` bytes.
    SecureBuffer getPrivatePem(const SecureBuffer& passphrase) const;

    /// Stays with this object.
    evp_pkey_st* getHandle() const { return _key.get(); }

private:
    struct Release {
        void operator()(evp_pkey_st* key) const noexcept;
    };

    explicit AsymmetricKey(evp_pkey_st* key) : _key(key) {}

    std::unique_ptr<evp_pkey_st, Release> _key;
};

} // namespace Sealwork
