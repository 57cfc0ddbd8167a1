#pragma once

#include <velmora/rules/HdlUnit.h>

#include <optional>
#include <string>

namespace Velmora {

/// What a VHDL design needs to use a unit, as lines of text: clauses to stand before an entity, declarations before
/// "begin", and the statement behind it.
struct HdlInstantiation {
    std::string context;
    std::string declarations; ///< A constant for each generic, a signal for each port; for a module its component.
    std::string statements;   ///< A labelled instantiation with every generic and port by its name.
};

/// Generics without a default get a value to be changed, and so do widths that a port leaves open. Nothing for a
/// generic that is no value, and for a module with a type, range or parameter that VHDL cannot say.
std::optional<HdlInstantiation> getInstantiation(const HdlUnit& unit);

} // namespace Velmora
