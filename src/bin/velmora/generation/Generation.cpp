#include <velmora/generation/Generation.h>

#include <velmora/generation/Clock.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

namespace Velmora {

namespace {

using Brindle::console;

std::string aborted(const std::string& reason) {
    return "Processing aborted [" + reason + "]";
}

} // namespace

bool Generation::run(const Brindle::Location& caller, const Work& work) const {
    console.print(title);
    console.indent();
    const bool isChecked = check();
    const bool isDone = isChecked && runGuarded(caller, work);
    if (isDone)
        console.print("Generating done");
    else
        console.printFailure(isChecked ? failureRule.closingLine : "Generating failed");
    console.unindent();
    return isDone;
}

bool Generation::runGuarded(const Brindle::Location& caller, const Work& work) const {
    const std::string unknown = "something strange...";
    try {
        return Brindle::locatedAt(caller, [&work] {
            requireGenerationDate();
            return work();
        });
    } catch (const Brindle::Exception& exception) {
        if (failureRule.wrapsInHouse)
            console.error(Brindle::reworded<Brindle::Fatal>(aborted(exception.getMessage()), exception));
        else
            console.error(exception);
    } catch (const std::exception& exception) {
        const std::string reason = failureRule.showsStandardText ? exception.what() : unknown;
        console.error(Brindle::located(Brindle::Fatal(aborted(reason)), caller));
    } catch (...) {
        console.error(Brindle::located(Brindle::Fatal(aborted(unknown)), caller));
    }
    return false;
}

} // namespace Velmora
