#pragma once

#include <cerrno>
#include <system_error>

namespace Brindle {

/// Throws std::system_error of the present `errno` unless a call of the system succeeded.
inline void requireSuccess(bool succeeded) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category());
}

} // namespace Brindle
