#pragma once

namespace Brindle {

/// True in a debugging build of the libraries.
constexpr bool isDebug() {
#ifdef NDEBUG
    return false;
#else
    return true;
#endif
}

} // namespace Brindle
