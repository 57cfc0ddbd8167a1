#pragma once

#include <velmora/form/Form.h>
#include <velmora/form/ProblemParts.h>

#include <Brindle/core/ConsoleObserver.h>
#include <Brindle/core/Exception.h>

#include <string>
#include <utility>

namespace Velmora {

/// Marks, while it lives, what the errors on the console are about.
class GenerationMarks : private Brindle::ConsoleObserver {
public:
    /// The form is kept, not owned.
    explicit GenerationMarks(const Form& form);

private:
    void onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) override;

    const Form& _form;
};

/// What the work of a generation returns, which may throw. What the script or the work finds wrong with the form's
/// values is marked.
template <class Work>
auto markRefusals(const Form& form, Work&& work) {
    const GenerationMarks marks(form);
    try {
        return std::forward<Work>(work)();
    } catch (const Brindle::Exception& exception) {
        if (!form.getMark().isSet())
            form.getMark().set(findHolders(form, exception), describe(exception));
        throw;
    }
}

/// What the work returns. What it throws is about these parts of the form, which are marked.
template <class Work>
auto markRefused(const Form& form, const CheckedParts& parts, Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (const Brindle::Exception& exception) {
        form.getMark().set(parts, describe(exception));
        throw;
    }
}

} // namespace Velmora
