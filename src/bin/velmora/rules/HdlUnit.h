#pragma once

#include <string>
#include <vector>

namespace Velmora {

/// A generic or port as its declaration says, without comments and with single blanks.
struct HdlObject {
    std::string name;
    std::string mode;  ///< Of VHDL "in" where none is written; of a Verilog port such as "input", of a parameter empty.
    std::string type;  ///< Of Verilog what stands beside the name, such as "wire signed [W-1:0]"; may be empty there.
    std::string value; ///< The default; empty when there is none.

    bool operator==(const HdlObject&) const = default;
};

/// The head of a VHDL entity or a Verilog module.
struct HdlUnit {
    std::string name;
    std::vector<std::string> context; ///< VHDL's library, use and context clauses in front, each with its semicolon.
    std::vector<HdlObject> generics;  ///< Of Verilog the parameters that an instantiation can set.
    std::vector<HdlObject> ports;
    bool isVerilog = false;
};

} // namespace Velmora
