#pragma once

#include <Brindle/tool/Command.h>
#include <Brindle/tool/UsageError.h>

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace Brindle {

/// A program of several commands: the first argument names one, the others are its.
struct Tool {
    std::string_view name; ///< As it is called.
    std::string_view version;
    std::string_view purpose; ///< What its help says in front of the list of commands.
    std::string_view closing; ///< What it says behind the list: exit statuses and examples.
    std::vector<const Command*> commands;
    /// Runs one of them and returns the exit status.
    int (*run)(const Command& command, const CommandLine& commandLine);
    /// Shows what ended a command and returns the exit status.
    int (*tellFailure)(const std::exception& exception);
};

/// What a program is called with, without its own name.
std::vector<std::string> getArguments(int argumentCount, char** arguments);

/// Prints the help, or name and version, when one of the arguments is "--help", "-h" or "--version", whatever the
/// others say, save those behind "--". False when none is.
bool answerQuestion(const std::vector<std::string>& arguments, std::string_view program, std::string_view version,
                    std::string_view help);

/// Shows on standard error what a program has to tell of itself, its name in front and control characters as question
/// marks.
void showProblem(std::string_view program, std::string_view text);

/// Shows that the command line is wrong and returns the exit status.
int tellWrongUsage(std::string_view program, const UsageError& error);

/// Does what the command line says and returns the exit status. The program's `main` should be no more than this.
int runTool(const Tool& tool, int argumentCount, char** arguments);

} // namespace Brindle
