#include <Sealwork/keys/SignerKeys.h>

#include <Sealwork/keys/KeyFile.h>

#include <algorithm>
#include <system_error>

namespace Sealwork {

SignerKeys SignerKeys::load(const std::filesystem::path& directory) {
    SignerKeys keys;
    std::error_code error;
    // A link that leads nowhere is an error and not the wish for no signer.
    if (std::filesystem::symlink_status(directory, error).type() == std::filesystem::file_type::not_found)
        return keys;
    // Whatever its ending: one that is passed over would let unsigned scripts run.
    for (const auto& filename : listKeyFiles(directory, ""))
        keys._keys.push_back(SignerKey::load(filename));
    return keys;
}

const SignerKey* SignerKeys::find(std::string_view id) const {
    const auto key = std::ranges::find(_keys, id, &SignerKey::getId);
    return key == _keys.end() ? nullptr : &*key;
}

} // namespace Sealwork
