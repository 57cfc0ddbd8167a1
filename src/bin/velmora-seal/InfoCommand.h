#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Tells what can be known of an envelope or a sealed script without a key.
extern const Command infoCommand;

} // namespace SealTool
