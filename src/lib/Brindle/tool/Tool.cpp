#include <Brindle/tool/Tool.h>

#include <Brindle/core/StandardStreams.h>
#include <Brindle/core/Text.h>

#include <algorithm>
#include <iostream>
#include <span>

namespace Brindle {

namespace {

constexpr int wrongUsageStatus = 2;

std::string getHelp(const Tool& tool) {
    const std::string name(tool.name);
    std::string text = "Usage: " + name + " COMMAND ...\n\n" + std::string(tool.purpose) + "\n";
    const auto widest =
        std::ranges::max(tool.commands, {}, [](const Command* command) { return command->name.size(); });
    for (const Command* command : tool.commands) {
        text.append("  ").append(command->name).append(widest->name.size() + 2 - command->name.size(), ' ');
        text.append(command->summary).append("\n");
    }
    return text + "\n" + name + " COMMAND --help tells more about one of them, " + name +
           " --version tells the version.\n\n" + std::string(tool.closing);
}

/// A command that was called, and what follows its name.
struct Call {
    const Command* command = nullptr;
    std::vector<std::string> arguments; ///< The last word of the name in front.
};

/// The command whose words the arguments begin with; none when there is no such command.
Call findCommand(const Tool& tool, const std::vector<std::string>& arguments) {
    std::string name;
    constexpr std::ptrdiff_t mostWords = 2;
    const auto end = arguments.begin() + std::min(std::ssize(arguments), mostWords);
    for (auto word = arguments.begin(); word != end; ++word) {
        name += (name.empty() ? "" : " ") + *word;
        if (const auto command = std::ranges::find(tool.commands, name, &Command::name); command != tool.commands.end())
            return {*command, {word, arguments.end()}};
    }
    return {};
}

/// Why the arguments are no command.
std::string getProblem(const Tool& tool, const std::string& first) {
    if (first.starts_with('-'))
        return "Unknown option " + first;
    std::string rest; // of the commands whose name begins so
    for (const Command* command : tool.commands) {
        if (command->name.starts_with(first + " "))
            rest += (rest.empty() ? "" : ", ") + std::string(command->name.substr(first.size() + 1));
    }
    return rest.empty() ? "Unknown command " + inQuotes(first)
                        : "Behind " + inQuotes(first) + " should stand one of these: " + rest;
}

int run(const Tool& tool, const std::vector<std::string>& arguments) {
    const Call call = findCommand(tool, arguments);
    if (answerQuestion(arguments, tool.name, tool.version,
                       call.command ? std::string(call.command->help) : getHelp(tool)))
        return 0;
    if (arguments.empty())
        throw located(UsageError("No command given"), BRINDLE_HERE);
    if (!call.command)
        throw located(UsageError(getProblem(tool, arguments.front())), BRINDLE_HERE);
    return tool.run(*call.command, CommandLine(call.arguments, call.command->options));
}

} // namespace

std::vector<std::string> getArguments(int argumentCount, char** arguments) {
    const std::span all(arguments, static_cast<std::size_t>(argumentCount));
    return {all.begin() + std::min(argumentCount, 1), all.end()};
}

bool answerQuestion(const std::vector<std::string>& arguments, std::string_view program, std::string_view version,
                    std::string_view help) {
    for (const std::string& argument : arguments) {
        if (argument == "--")
            return false;
        const bool isForHelp = argument == "--help" || argument == "-h";
        if (isForHelp)
            std::cout << help;
        else if (argument == "--version")
            std::cout << program << ' ' << version << '\n';
        else
            continue;
        return true;
    }
    return false;
}

void showProblem(std::string_view program, std::string_view text) {
    std::cerr << program << ": " << getPrintable(text) << '\n';
}

int tellWrongUsage(std::string_view program, const UsageError& error) {
    showProblem(program, error.getMessage() + "; see " + std::string(program) + " --help");
    return wrongUsageStatus;
}

int runTool(const Tool& tool, int argumentCount, char** arguments) {
    completeStandardStreams();
    try {
        const int status = run(tool, getArguments(argumentCount, arguments));
        if (!std::cout.flush())
            throw located(Fatal("Unable to write to standard output"), BRINDLE_HERE);
        return status;
    } catch (const UsageError& error) {
        return tellWrongUsage(tool.name, error);
    } catch (const std::exception& exception) {
        return tool.tellFailure(exception);
    }
}

} // namespace Brindle
