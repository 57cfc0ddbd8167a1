#pragma once

#include <Sealwork/keys/ScriptKeys.h>
#include <Sealwork/keys/SignerKeys.h>

#include <string>
#include <string_view>

namespace Sealwork {

struct ScriptContainer;

/// Opens sealed scripts with the keys of an installation.
class ScriptOpener {
public:
    /// Both are kept, not owned. As soon as there is one signer, a script must be signed by one of them.
    ScriptOpener(const ScriptKeys& keys, const SignerKeys& signers) : _keys(keys), _signers(signers) {}

    /// The plain text, once signature and tag have been found right. Throws ScriptRefused, with the field "keyId" when
    /// the key is not installed and "signer" when the signer is unknown.
    std::string open(std::string_view text) const;

private:
    void checkSignature(const ScriptContainer& container) const;

    const ScriptKeys& _keys;
    const SignerKeys& _signers;
};

} // namespace Sealwork
