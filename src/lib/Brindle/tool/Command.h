#pragma once

#include <Brindle/tool/CommandLine.h>

#include <string_view>
#include <vector>

namespace Brindle {

/// One thing that a command-line program does.
struct Command {
    std::string_view name;    ///< Of one word, or of two with a blank between them.
    std::string_view summary; ///< Half a line for the list of commands.
    std::string_view help;    ///< What `--help` shows.
    std::vector<Option> options;
    /// Does it and returns the exit status. What it throws is reported by its caller.
    int (*run)(const CommandLine& commandLine);
};

} // namespace Brindle
