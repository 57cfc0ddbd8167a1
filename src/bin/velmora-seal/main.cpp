#include <Brindle/core/StandardStreams.h>
#include <velmora-seal/InfoCommand.h>
#include <velmora-seal/KeygenCommand.h>
#include <velmora-seal/OpenCommand.h>
#include <velmora-seal/ProtectCommand.h>
#include <velmora-seal/RecipientsCommand.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/SealCommand.h>
#include <velmora-seal/UnsealCommand.h>
#include <velmora-seal/UsageError.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

namespace SealTool {

namespace {

const std::array<const Command*, 7> commands = {&keygenCommand,  &recipientsCommand, &sealCommand, &unsealCommand,
                                                &protectCommand, &openCommand,       &infoCommand};

void showHelp() {
    std::cout << "Usage: velmora-seal COMMAND ...\n\n"
                 "Makes and keeps the keys of sealed generator scripts and of protected HDL regions, and seals,\n"
                 "protects and opens them.\n\n";
    for (const auto* command : commands)
        std::cout << "  " << command->name << std::string(12 - command->name.size(), ' ') << command->summary << '\n';
    std::cout << "\nvelmora-seal COMMAND --help tells more about one of them.\n\n"
                 "Exit status:\n"
                 "  0  done\n"
                 "  2  a wrong command line, or a file that cannot be used\n"
                 "  3  the input is malformed\n"
                 "  4  no key at hand opens it\n"
                 "  5  it was altered after it was sealed or protected\n"
                 "  6  there is nothing to open, or its signature is missing or wrong\n\n"
                 "Example: velmora-seal keygen script -o keys\n";
}

const Command& getCommand(const std::string& name) {
    const auto command = std::ranges::find(commands, name, [](const Command* known) { return known->name; });
    if (command == commands.end())
        throw Brindle::located(UsageError("Unknown command " + name), BRINDLE_HERE);
    return **command;
}

ExitCode run(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        throw Brindle::located(UsageError("No command given"), BRINDLE_HERE);
    if (arguments.front() == "--help" || arguments.front() == "-h") {
        showHelp();
        return ExitCode::Done;
    }
    const auto& command = getCommand(arguments.front());
    const CommandLine commandLine(arguments, command.options);
    if (commandLine.has("help")) {
        std::cout << command.help;
        return ExitCode::Done;
    }
    return command.run(commandLine);
}

ExitCode runReporting(const std::vector<std::string>& arguments) {
    try {
        const auto result = run(arguments);
        if (!std::cout.flush())
            throw Brindle::located(Brindle::Fatal("Unable to write file"), BRINDLE_HERE,
                                   {{"filename", "standard output"}});
        return result;
    } catch (const UsageError& error) {
        showProblem(getReport(error) + "; see velmora-seal --help");
    } catch (const Brindle::Exception& exception) {
        showProblem(getReport(exception));
        return getExitCode(exception);
    } catch (const std::bad_alloc&) {
        showProblem("Not enough memory");
    } catch (const std::exception& exception) {
        showProblem(exception.what());
    }
    return ExitCode::UsageOrFile;
}

} // namespace

} // namespace SealTool

int main(int argumentCount, char* arguments[]) {
    Brindle::completeStandardStreams();
    return static_cast<int>(SealTool::runReporting({arguments + 1, arguments + argumentCount}));
}
