#pragma once

#include <Brindle/Location.h>

#include <functional>
#include <string>
#include <string_view>

namespace Velmora {

/// The HDL language of a generated file: "vlog" when its name ends with ".v" or ".vh", otherwise "vhdl".
std::string getLanguage(std::string_view filename);

/// Enciphers one region; called with the language and the region's lines.
using RegionCipher = std::function<std::string(const std::string& language, const std::string& region)>;

/// The text with every region between a line holding "`protect begin" and the next one holding "`protect end" replaced
/// by what the cipher makes of it; the marker lines are dropped and every other line ends with a line feed. A region
/// that is still open at the end is dropped. Throws Brindle::Fatal, located at `caller`, when the markers are out of
/// order.
std::string protectRegions(std::string_view text, const std::string& language, const RegionCipher& encipher,
                           const Brindle::Location& caller);

} // namespace Velmora
