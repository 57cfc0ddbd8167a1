#pragma once

#include <velmora-generate/Command.h>

namespace GenerateTool {

/// Shows the installed IPs.
extern const Command listCommand;

} // namespace GenerateTool
