#pragma once

#include <string_view>

namespace Velmora {

/// The product's version, which all its programs have.
struct Version {
    unsigned long major;
    unsigned long minor;
    unsigned long patch;
    std::string_view text; ///< The three with dots between them: "1.0.0".
};

extern const Version version;

} // namespace Velmora
