#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/generation/Clock.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/core/StandardStreams.h>
#include <Quillon/Application.h>

#include <algorithm>

namespace {

using Brindle::console;

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
    const auto application = Velmora::createApplication(argc, argv, true);
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
