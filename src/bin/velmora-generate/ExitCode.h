#pragma once

namespace GenerateTool {

/// How a command ended, as the process's exit status.
enum ExitCode : int {
    Done = 0,
    Failed = 1, ///< Something was refused or could not be generated.
    Usage = 2,  ///< The command line is wrong.
};

} // namespace GenerateTool
