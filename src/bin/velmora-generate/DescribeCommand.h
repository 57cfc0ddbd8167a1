#pragma once

#include <velmora-generate/Command.h>

namespace GenerateTool {

/// Shows what the form of an IP asks for.
extern const Command describeCommand;

} // namespace GenerateTool
