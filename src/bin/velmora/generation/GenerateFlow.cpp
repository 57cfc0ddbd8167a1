#include <velmora/generation/GenerateFlow.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

namespace Velmora {

namespace {

using Brindle::console;

std::string aborted(const std::string& reason) {
    return "Processing aborted [" + reason + "]";
}

} // namespace

bool runGuarded(const FailureRule& rule, const Brindle::Location& caller, const std::function<void()>& work) {
    const std::string unknown = "something strange...";
    try {
        work();
        return true;
    } catch (const Brindle::Exception& exception) {
        if (rule.wrapsInHouse)
            console.error(Brindle::reworded<Brindle::Fatal>(aborted(exception.getMessage()), exception));
        else
            console.error(exception);
    } catch (const std::exception& exception) {
        const std::string reason = rule.showsStandardText ? exception.what() : unknown;
        console.error(Brindle::located(Brindle::Fatal(aborted(reason)), caller));
    } catch (...) {
        console.error(Brindle::located(Brindle::Fatal(aborted(unknown)), caller));
    }
    return false;
}

bool runGeneration(const std::string& title, const FailureRule& rule, const Brindle::Location& caller,
                   const std::function<bool()>& check, const std::function<void()>& work, DoneWhen doneWhen) {
    console.print(title);
    console.indent();
    const bool isChecked = check();
    const unsigned long errorCount = console.getErrorCount();
    const bool isDone = isChecked && runGuarded(rule, caller, work) &&
                        (doneWhen == DoneWhen::NothingThrown || console.getErrorCount() == errorCount);
    if (!isChecked)
        console.print("Generating failed");
    else
        console.print(isDone ? "Generating done" : rule.closingLine);
    console.unindent();
    return isDone;
}

} // namespace Velmora
