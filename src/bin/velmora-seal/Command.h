#pragma once

#include <velmora-seal/CommandLine.h>
#include <velmora-seal/ExitCode.h>

#include <string_view>
#include <vector>

namespace SealTool {

/// One thing that the tool does.
struct Command {
    std::string_view name;
    std::string_view summary; ///< Half a line for the list of commands.
    std::string_view help;    ///< What `--help` shows.
    std::vector<Option> options;
    /// Does it. What it throws is reported by its caller.
    ExitCode (*run)(const CommandLine& commandLine);
};

} // namespace SealTool
