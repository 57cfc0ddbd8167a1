#pragma once

#include <velmora-seal/Command.h>

namespace SealTool {

/// Shows, adds and checks those who can open what an installation protects.
extern const Command recipientsCommand;

} // namespace SealTool
