#pragma once

#include <velmora-generate/Command.h>

namespace GenerateTool {

/// Generates from configurations.
extern const Command runCommand;

} // namespace GenerateTool
