#pragma once

#include <Brindle/core/Exception.h>

namespace SealTool {

/// How a command ended, as the process's exit status.
enum ExitCode : int {
    Done = 0,
    UsageOrFile = 2,        ///< The command line, or a file that cannot be used.
    Malformed = 3,          ///< Input that is not what it should be.
    NoKey = 4,              ///< No key at hand can open it.
    Altered = 5,            ///< Changed after it was sealed or protected, or an envelope for other keys.
    NothingOrUntrusted = 6, ///< Nothing to open, or a script that no trusted signer signed.
    NoRegion = 7,           ///< Nothing to protect.
};

/// What the exit status is when the exception ended the command.
ExitCode getExitCode(const Brindle::Exception& exception);

} // namespace SealTool
