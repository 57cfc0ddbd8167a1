#pragma once

#include <Sealwork/keys/SignerKey.h>

#include <filesystem>
#include <string_view>
#include <vector>

namespace Sealwork {

/// The trusted signers of an installation.
class SignerKeys {
public:
    /// Reads every file of the directory that is not hidden; a bad one is an error, a directory that does not exist
    /// means no signer. Throws what `listKeyFiles` and `SignerKey::load` throw.
    static SignerKeys load(const std::filesystem::path& directory);

    bool isEmpty() const { return _keys.empty(); }
    /// The signer of that identity, null when it is not trusted; stays with this object.
    const SignerKey* find(std::string_view id) const;

private:
    std::vector<SignerKey> _keys;
};

} // namespace Sealwork
