#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How values are written in a configuration file. A text stands as it is. One that could be misread (it begins or ends
/// with a blank, begins with a double quote or holds a control character; in a list also one that is empty or holds a
/// comma) stands between double quotes, in which `\"`, `\\`, `\n`, `\r`, `\t` and, for any other control character,
/// `\x` and two hexadecimal digits are known.
namespace Velmora::ConfigurationValue {

/// The value that stands for a text.
std::string fromText(std::string_view text);
/// The value that stands for a list of texts: separated by ", ".
std::string fromList(const std::vector<std::string>& texts);

/// The text that a value stands for; nothing when quotes or escapes are wrong.
std::optional<std::string> toText(std::string_view value);
/// The texts of a list, one at least; nothing when quotes or escapes are wrong.
std::optional<std::vector<std::string>> toList(std::string_view value);

} // namespace Velmora::ConfigurationValue
