#pragma once

#include <velmora/ips/described/FormDescription.h>

#include <cstddef>
#include <string_view>

namespace Velmora {

inline constexpr std::size_t largestFormDescription = 1024UL * 1024; ///< As a file, in bytes.

/// Reads the text of a form.json, whose rules share/velmora/form.schema.json holds as well, as far as a schema can:
/// keys and arguments are unique, the keys that rows name are rows of the right kind, and values lie in their ranges.
/// Throws Brindle::Critical with the field "line" for the first thing that is wrong.
FormDescription parseFormDescription(std::string_view text);

} // namespace Velmora
