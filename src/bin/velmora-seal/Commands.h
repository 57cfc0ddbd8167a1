#pragma once

#include <Brindle/tool/Command.h>

namespace SealTool {

extern const Brindle::Command keygenCommand;     ///< Makes script keys and the key pairs of signers and recipients.
extern const Brindle::Command recipientsCommand; ///< Lists, checks and adds those who can open protected regions.
extern const Brindle::Command sealCommand;       ///< Seals a script.
extern const Brindle::Command unsealCommand;     ///< Opens a sealed script.
extern const Brindle::Command protectCommand;    ///< Protects the regions of an HDL file.
extern const Brindle::Command openCommand;       ///< Opens the envelopes of an HDL file.
extern const Brindle::Command infoCommand;       ///< Tells what an envelope or a sealed script says of itself.

} // namespace SealTool
