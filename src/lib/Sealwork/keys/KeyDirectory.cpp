#include <Sealwork/keys/KeyDirectory.h>

#include <Brindle/core/Exception.h>

#include <cstdlib>
#include <string_view>

namespace Sealwork {

namespace {

std::string_view getVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

KeyDirectory KeyDirectory::locate() {
    if (const auto directory = getVariable("VELMORA_SEAL_DIR"); !directory.empty())
        return KeyDirectory(directory);
    if (const auto prefix = getVariable("ORVANE_PREFIX"); !prefix.empty())
        return KeyDirectory(std::filesystem::path(prefix) / "etc/velmora/seal");
    throw Brindle::located(Brindle::Fatal("Unable to open key directory"), BRINDLE_HERE,
                           {{"filename", "$ORVANE_PREFIX/etc/velmora/seal"},
                            {"reason", "neither VELMORA_SEAL_DIR nor ORVANE_PREFIX is set"}});
}

} // namespace Sealwork
