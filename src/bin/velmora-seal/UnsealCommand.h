#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Opens a sealed script.
extern const Command unsealCommand;

} // namespace SealTool
