#pragma once

#include <Brindle/tool/Command.h>

namespace GenerateTool {

extern const Brindle::Command listCommand;        ///< Shows the installed IPs.
extern const Brindle::Command describeCommand;    ///< Shows what the form of an IP asks for.
extern const Brindle::Command templateCommand;    ///< Makes a configuration with the reset values of an IP.
extern const Brindle::Command checkCommand;       ///< Checks configurations.
extern const Brindle::Command runCommand;         ///< Generates from configurations.
extern const Brindle::Command previewCommand;     ///< Shows what would be generated.
extern const Brindle::Command instantiateCommand; ///< Shows how a design uses it.
extern const Brindle::Command benchCommand;       ///< Writes test benches.
extern const Brindle::Command designCommand;      ///< Designs the coefficients of a filter.
extern const Brindle::Command importCommand;      ///< Makes coefficients from the numbers of a file.
extern const Brindle::Command responseCommand;    ///< Tells what the filter of a configuration does to sines.
extern const Brindle::Command newIPCommand;       ///< Makes an IP to begin with.
extern const Brindle::Command checkIPCommand;     ///< Tells what is wrong with an IP that is being written.

} // namespace GenerateTool
