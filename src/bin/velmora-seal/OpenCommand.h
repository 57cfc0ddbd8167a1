#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Opens the envelopes of an HDL file.
extern const Command openCommand;

} // namespace SealTool
