#pragma once

#include <string_view>

namespace Brindle {

/// Where in the source an exception was thrown. The texts are kept as views: they must outlive the location, as
/// literals do.
struct Location {
    std::string_view file;     ///< Path below the source tree without its extension, such as `src/bin/velmora/IPLeaf`.
    std::string_view function; ///< Unqualified function name.
    int line = 0;              ///< Line number, from 1; 0 when the place is not known.

    bool operator==(const Location&) const = default;
};

/// The path without the extension of its last component.
constexpr std::string_view withoutExtension(std::string_view path) {
    const auto dot = path.rfind('.');
    const auto slash = path.rfind('/');
    const bool dotInLastComponent = dot != path.npos && (slash == path.npos || dot > slash);
    return dotInLastComponent ? path.substr(0, dot) : path;
}

} // namespace Brindle

/// The location of the line that uses it.
#define BRINDLE_HERE (::Brindle::Location{::Brindle::withoutExtension(__FILE__), __func__, __LINE__})
