#pragma once

#include <string_view>

namespace Sealwork {

/// The standard alphabet of RFC 4648, table 1.
inline constexpr std::string_view base64Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace Sealwork
