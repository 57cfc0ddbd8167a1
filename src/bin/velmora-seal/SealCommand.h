#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Seals a script.
extern const Command sealCommand;

} // namespace SealTool
