#pragma once

#include <Sealwork/keys/ScriptKey.h>
#include <Sealwork/script/ScriptSigner.h>

#include <string>
#include <string_view>

namespace Sealwork {

/// Seals scripts: AES-256-GCM (NIST SP 800-38D) with the container's header as associated data and, with a signer, an
/// Ed25519 signature over header and ciphertext.
class ScriptSealer {
public:
    /// Key and signer are kept, not owned; the signer may be null.
    explicit ScriptSealer(const ScriptKey& key, const ScriptSigner* signer = nullptr) : _key(key), _signer(signer) {}

    /// The sealed text. Throws InvalidRequest "Script too large" (field "size") beyond 64 MiB and "Script is sealed
    /// already", Fatal "No random numbers available" and "Cryptography failure".
    std::string seal(std::string_view script) const;

private:
    const ScriptKey& _key;
    const ScriptSigner* _signer;
};

} // namespace Sealwork
