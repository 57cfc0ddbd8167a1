#include <Brindle/core/Module.h>

#include <Brindle/core/Exception.h>

#include <array>
#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace Brindle {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& name, const std::string& reason) {
    throw located(Critical("A part of the installation is missing"), BRINDLE_HERE,
                  {{"module", name}, {"reason", reason}});
}

std::string findFile(const std::string& name) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
    const std::string filename = name + ".so";
    const std::array<fs::path, 3> folders{program / "../../lib/velmora", // from libexec/velmora
                                          program / "../lib/velmora",    // from bin
                                          VELMORA_MODULES};              // of the build that a program elsewhere links
    for (const fs::path& folder : folders) {
        if (!folder.empty() && fs::exists(folder / filename, error))
            return (folder / filename).lexically_normal();
    }
    refuse(filename, "There is no such file in " + folders.front().lexically_normal().string());
}

} // namespace

Module::Module(const std::string& name) : _name(name + ".so") {
    _handle = dlopen(findFile(name).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!_handle)
        refuse(_name, dlerror());
}

void* Module::findAddress(const char* name) const {
    void* const address = dlsym(_handle, name);
    if (!address)
        refuse(_name, "It has no " + std::string(name));
    return address;
}

} // namespace Brindle
