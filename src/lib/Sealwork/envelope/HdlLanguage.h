#pragma once

#include <string_view>

namespace Sealwork {

/// The names of the two languages that envelopes are written for.
inline constexpr std::string_view vhdlLanguage = "vhdl";
inline constexpr std::string_view verilogLanguage = "vlog";

/// What a directive of the language begins with.
constexpr std::string_view getDirectivePrefix(std::string_view language) {
    return language == vhdlLanguage ? "`protect " : "`pragma protect ";
}

} // namespace Sealwork
