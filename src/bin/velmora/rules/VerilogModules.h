#pragma once

#include <velmora/rules/HdlUnit.h>

#include <string_view>
#include <vector>

namespace Velmora {

/// The modules of a Verilog text, in order, with ports in either style: declared in the head or in the body. One whose
/// head cannot be understood is left out, and so is what is enciphered.
std::vector<HdlUnit> readVerilogModules(std::string_view text);

} // namespace Velmora
