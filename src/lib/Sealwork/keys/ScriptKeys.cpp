#include <Sealwork/keys/ScriptKeys.h>

#include <Sealwork/keys/KeyFile.h>

#include <algorithm>

namespace Sealwork {

ScriptKeys ScriptKeys::load(const std::filesystem::path& directory) {
    ScriptKeys keys;
    for (const auto& filename : listKeyFiles(directory, ".key"))
        keys._keys.push_back(ScriptKey::load(filename));
    return keys;
}

const ScriptKey* ScriptKeys::find(std::string_view id) const {
    const auto key = std::ranges::find(_keys, id, &ScriptKey::getId);
    return key == _keys.end() ? nullptr : &*key;
}

} // namespace Sealwork
