#pragma once

#include <velmora/rules/HdlUnit.h>

#include <string_view>
#include <vector>

namespace Velmora {

/// The entities of a VHDL text (87 to 2008), in order. One whose head cannot be understood is left out, and so is what
/// is enciphered.
std::vector<HdlUnit> readVhdlEntities(std::string_view text);

} // namespace Velmora
