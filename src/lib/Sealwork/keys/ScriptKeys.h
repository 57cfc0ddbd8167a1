#pragma once

#include <Sealwork/keys/ScriptKey.h>

#include <filesystem>
#include <string_view>
#include <vector>

namespace Sealwork {

/// The script keys of an installation; several while one takes over from another.
class ScriptKeys {
public:
    /// Reads every `*.key` of the directory; a bad file is an error. Throws what `listKeyFiles` and `ScriptKey::load`
    /// throw.
    static ScriptKeys load(const std::filesystem::path& directory);

    /// The key of that identity, null when it is not installed; stays with this object.
    const ScriptKey* find(std::string_view id) const;

private:
    std::vector<ScriptKey> _keys;
};

} // namespace Sealwork
