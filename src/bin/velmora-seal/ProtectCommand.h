#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Protects the regions of an HDL file.
extern const Command protectCommand;

} // namespace SealTool
