#pragma once

#include <string>
#include <string_view>

namespace Brindle {

/// A shared object of this project that holds what is seldom needed, loaded when it first is; it stays until the
/// process ends. It lies in `lib/velmora` of the installation or build folder that the running program lies in.
class Module {
public:
    /// `name` has no directory, prefix or extension. Throws Critical "A part of the installation is missing" with the
    /// fields "module" and "reason".
    explicit Module(const std::string& name);

    /// Its function of that name, which has C linkage. Throws the same.
    template <class Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(findAddress(name));
    }

private:
    void* findAddress(const char* name) const;

    std::string _name;
    void* _handle = nullptr;
};

} // namespace Brindle
