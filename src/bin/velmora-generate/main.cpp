#include <velmora-generate/CheckCommand.h>
#include <velmora-generate/DescribeCommand.h>
#include <velmora-generate/ListCommand.h>
#include <velmora-generate/RunCommand.h>
#include <velmora-generate/TemplateCommand.h>
#include <velmora-generate/UsageError.h>

#include <velmora/generation/ApplicationIdentity.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/StandardStreams.h>

#include <QTextCodec>

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>

namespace GenerateTool {

namespace {

using Brindle::console;

const std::array<const Command*, 5> commands = {&listCommand, &describeCommand, &templateCommand, &checkCommand,
                                                &runCommand};

void showHelp() {
    std::cout << "Usage: velmora-generate COMMAND ...\n\n"
                 "Generates HDL from the configurations of IPs, without a display.\n\n";
    for (const Command* command : commands)
        std::cout << "  " << QString(command->name).leftJustified(10).toStdString() << command->summary << '\n';
    std::cout << "\nvelmora-generate COMMAND --help tells more about one of them.\n\n"
                 "Exit status: 0 done, 1 something was refused or could not be generated,\n2 a wrong command line.\n\n"
                 "Example: velmora-generate template Systolic > filter.velmora\n"
                 "         $EDITOR filter.velmora    # at least Entity and Coefficients\n"
                 "         velmora-generate run filter.velmora\n";
}

const Command& getCommand(const QString& name) {
    const auto command = std::ranges::find(commands, name, [](const Command* known) { return QString(known->name); });
    if (command == commands.end())
        throw Brindle::located(UsageError("Unknown command '" + name.toStdString() + "'"), BRINDLE_HERE);
    return **command;
}

/// Runs the command in a process that needs neither display nor settings store.
ExitCode runWithoutWindow(const Command& command, const QCommandLineParser& commandLine, const QStringList& operands,
                          char* programName) {
    int argumentCount = 1; // Qt's own options are not for this program
    std::array<char*, 2> arguments{programName, nullptr};
    qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString&) {}); // what desktops lack is no news
    const auto application = Velmora::createApplication(argumentCount, arguments.data(), false);
    return command.run(commandLine, operands);
}

ExitCode run(const QStringList& arguments, char* programName) {
    const QString first = arguments.value(1);
    if (first.isEmpty())
        throw Brindle::located(UsageError("No command given"), BRINDLE_HERE);
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        showHelp();
        return ExitCode::Done;
    }
    const Command& command = getCommand(first);
    QCommandLineParser parser;
    parser.addOptions(command.options);
    parser.addOption(QCommandLineOption(QStringList{"h", "help"}));
    if (!parser.parse(arguments.mid(1))) {
        QString problem = parser.errorText();
        if (problem.endsWith('.'))
            problem.chop(1);
        throw Brindle::located(UsageError(problem.toStdString()), BRINDLE_HERE);
    }
    if (parser.isSet("help")) {
        std::cout << command.help;
        return ExitCode::Done;
    }
    return runWithoutWindow(command, parser, parser.positionalArguments(), programName);
}

ExitCode runReporting(const QStringList& arguments, char* programName) {
    try {
        return run(arguments, programName);
    } catch (const UsageError& error) {
        std::cerr << "velmora-generate: " << error.getMessage() << "; see velmora-generate --help\n";
        return ExitCode::Usage;
    } catch (const Brindle::Exception& exception) {
        console.error(exception);
    } catch (const std::exception& exception) {
        console.error(exception.what());
    }
    return ExitCode::Failed;
}

} // namespace

} // namespace GenerateTool

int main(int argumentCount, char** arguments) {
    Brindle::completeStandardStreams();
    // File names are UTF-8 whatever the locale, which is "C" in many builds.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QStringList texts;
    for (int index = 0; index < argumentCount; ++index)
        texts += QString::fromUtf8(arguments[index]);
    const GenerateTool::ExitCode exitCode = GenerateTool::runReporting(texts, arguments[0]);
    if (std::cout.flush())
        return static_cast<int>(exitCode);
    std::cerr << "velmora-generate: Unable to write to standard output\n";
    return static_cast<int>(GenerateTool::ExitCode::Failed);
}
