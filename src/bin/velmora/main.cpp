#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/generation/Clock.h>
#include <velmora/rules/Version.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/core/StandardStreams.h>
#include <Brindle/core/Text.h>
#include <Brindle/tool/Tool.h>
#include <Quillon/Application.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>

namespace {

using Brindle::console;

constexpr std::string_view program = "velmora";

constexpr std::string_view help = R"(Usage: velmora [-no-about] [Qt option]...

Shows the installed IPs with their descriptions and forms, and generates HDL from
what the forms hold.

  -no-about  Open on the IPs page instead of the About page.
  --help     Print this help.
  --version  Print the version.

velmora-generate generates without a window.
)";

/// What is wrong with the arguments that are left for the program. `-check` and `-help` do nothing.
std::optional<Brindle::UsageError> findWrongUsage(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        if (argument == "-check" || argument == "-help")
            continue;
        return Brindle::UsageError(argument.starts_with('-')
                                       ? "Unknown option " + argument.substr(0, argument.find('='))
                                       : "Unexpected " + Brindle::inQuotes(argument));
    }
    return std::nullopt;
}

Brindle::InternalError processingAborted(const std::string& reason) {
    return Brindle::located(Brindle::InternalError("Processing aborted [" + reason + "]"),
                            {"src/bin/velmora/main", "main", 80});
}

/// Shows the window until it is closed. Whatever ends it by an exception leaves as one of the in-house family.
int runWindow() {
    try {
        Velmora::MainWindow window;
        window.show();
        return Quillon::Application::exec();
    } catch (const Brindle::Exception&) {
        throw;
    } catch (const std::exception& exception) {
        throw processingAborted(exception.what());
    } catch (...) {
        throw processingAborted("something strange...");
    }
}

/// The number of errors, as far as an exit status can tell it.
int errorStatus() {
    constexpr unsigned long largestStatus = 255;
    return static_cast<int>(std::min(console.getErrorCount(), largestStatus));
}

} // namespace

int main(int argc, char** argv) {
    Brindle::completeStandardStreams();
    if (Brindle::answerQuestion(Brindle::getArguments(argc, argv), program, Velmora::version.text, help))
        return std::cout.flush() ? 0 : 1;
    std::unique_ptr<Quillon::Application> application;
    try {
        application = Velmora::createApplication(argc, argv, true);
    } catch (const Brindle::Exception& exception) {
        console.error(exception);
        return errorStatus();
    }
    if (const auto wrongUsage = findWrongUsage(Brindle::getArguments(argc, argv)))
        return Brindle::tellWrongUsage(program, *wrongUsage);
    console.setFullLogFile("");
    console.print("Running velmora", "");
    console.indent();
    console.openTimer();
    console.print("Started on " + Velmora::getDateLabel(), "");
    try {
        return runWindow();
    } catch (const Brindle::Exception& exception) {
        console.error(exception);
    }
    console.closeTimer(console.getErrorCount() == 0 ? "Running velmora succeed in %" : "Running velmora failed in %");
    console.unindent();
    return errorStatus();
}
