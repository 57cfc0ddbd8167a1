#pragma once

#include <velmora-generate/Command.h>

namespace GenerateTool {

/// Checks configurations.
extern const Command checkCommand;

} // namespace GenerateTool
