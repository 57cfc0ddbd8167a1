#pragma once

#include <Sealwork/keys/AsymmetricKey.h>
#include <Sealwork/keys/SignerKey.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace Sealwork {

/// Private Ed25519 key (RFC 8032) with which a script is signed.
class ScriptSigner {
public:
    /// Reads a PEM private key; the passphrase is asked for when it is enciphered. Throws what `readKeyFile` and the
    /// source throw.
    static ScriptSigner load(const std::filesystem::path& filename, const PassphraseSource& passphrase);

    /// The same as that of the public key.
    const std::string& getId() const { return _id; }
    Signature sign(std::string_view message) const;

private:
    explicit ScriptSigner(AsymmetricKey key) : _key(std::move(key)), _id(_key.getId()) {}

    AsymmetricKey _key;
    std::string _id;
};

} // namespace Sealwork
