#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Makes script keys, signers and recipients.
extern const Command keygenCommand;

} // namespace SealTool
