#pragma once

#include <Brindle/core/Location.h>

#include <functional>
#include <string>

namespace Velmora {

/// How a family of forms shows what ended a generation.
struct FailureRule {
    bool wrapsInHouse;       ///< An in-house exception is shown as "Processing aborted [" its message "]".
    bool showsStandardText;  ///< A standard one is shown with its text; otherwise as "something strange...".
    const char* closingLine; ///< Printed after the error.
};

namespace FailureRules {
inline constexpr FailureRule bridge{false, true, "Generating Failed"};
inline constexpr FailureRule filter{true, false, "Generating failed"};
inline constexpr FailureRule lineTable{true, true, "Generating Failed"}; // forms that hold a table of lines
} // namespace FailureRules

/// Runs the work of a generation; what it throws is shown as one error on the console, as `runGeneration` does it. True
/// when it threw nothing.
bool runGuarded(const FailureRule& rule, const Brindle::Location& caller, const std::function<void()>& work);

/// What the work of a generation must not have done for this to be done. Scripts show errors and yet return a result.
enum class DoneWhen { NothingThrown, NoErrorShown };

/// One generation as the console tells it: the title, then, indented, what the check and the work print and "Generating
/// done". When the check fails, which has told why, "Generating failed" ends it; when the work throws, the exception as
/// one error and the rule's closing line. A wrapped exception keeps its named fields and location; what is not of the
/// in-house family is located at `caller`. Returns true when the generation is done; the closing line ends any other
/// whose check passed.
bool runGeneration(const std::string& title, const FailureRule& rule, const Brindle::Location& caller,
                   const std::function<bool()>& check, const std::function<void()>& work,
                   DoneWhen doneWhen = DoneWhen::NothingThrown);

} // namespace Velmora
