#include <velmora-generate/Commands.h>
#include <velmora-generate/ExitCode.h>

#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/rules/Version.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/tool/Tool.h>

#include <QSettings>
#include <QTextCodec>

#include <array>

namespace GenerateTool {

namespace {

/// Runs the command in a process that needs neither display nor settings store.
int runWithoutWindow(const Brindle::Command& command, const Brindle::CommandLine& commandLine) {
    std::string name = "velmora-generate";
    int argumentCount = 1; // Qt's own options are not for this program
    std::array<char*, 2> arguments{name.data(), nullptr};
    // File names are UTF-8 whatever the locale, which is "C" in many builds.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString&) {}); // what desktops lack is no news
    // No settings of the user have a say here.
    for (const auto scope : {QSettings::UserScope, QSettings::SystemScope})
        QSettings::setPath(QSettings::NativeFormat, scope, "/dev/null");
    const auto application = Velmora::createApplication(argumentCount, arguments.data(), false);
    return command.run(commandLine);
}

int tellFailure(const std::exception& exception) {
    if (const auto* own = dynamic_cast<const Brindle::Exception*>(&exception))
        Brindle::console.error(*own);
    else
        Brindle::console.error(exception.what());
    return ExitCode::Failed;
}

const Brindle::Tool tool{
    "velmora-generate",
    Velmora::version.text,
    "Generates HDL from the configurations of IPs, without a display.\n",
    "Exit status: 0 done, 1 something was refused or could not be generated,\n2 a wrong command line.\n\n"
    "Example: velmora-generate template Systolic > filter.velmora\n"
    "         $EDITOR filter.velmora    # at least Entity and Coefficients\n"
    "         velmora-generate run filter.velmora\n",
    {&listCommand, &describeCommand, &templateCommand, &checkCommand, &runCommand, &previewCommand, &instantiateCommand,
     &benchCommand, &designCommand, &importCommand, &responseCommand, &newIPCommand, &checkIPCommand},
    runWithoutWindow,
    tellFailure};

} // namespace

} // namespace GenerateTool

int main(int argumentCount, char** arguments) {
    return Brindle::runTool(GenerateTool::tool, argumentCount, arguments);
}
