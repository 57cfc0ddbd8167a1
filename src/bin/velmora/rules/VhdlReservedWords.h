#pragma once

#include <string_view>

namespace Velmora {

/// True for a reserved word of VHDL-2008 (IEEE Std 1076-2008, 15.10) in either case, those of PSL excepted.
bool isVhdlReservedWord(std::string_view text);

} // namespace Velmora
