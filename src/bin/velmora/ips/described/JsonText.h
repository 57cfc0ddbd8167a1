#pragma once

#include <velmora/ips/described/JsonValue.h>

#include <string_view>

namespace Velmora {

/// Reads a JSON text (RFC 8259) in UTF-8 without a byte order mark. Throws Brindle::Critical with the field "line" for
/// what is none, for an object that has two members of one name, and for values nested deeper than 16.
JsonValue parseJson(std::string_view text);

} // namespace Velmora
