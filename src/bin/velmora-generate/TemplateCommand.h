#pragma once

#include <velmora-generate/Command.h>

namespace GenerateTool {

/// Makes a configuration with the reset values of an IP.
extern const Command templateCommand;

} // namespace GenerateTool
