#pragma once

#include <velmora/generation/GeneratedFiles.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Location.h>

#include <QString>

#include <functional>
#include <string>
#include <variant>

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

/// What a form generates from its values, wherever the output goes. It is valid as long as the form.
struct Generation {
    using TextScript = std::function<QString()>;
    using FilesScript = std::function<GeneratedFiles()>;
    using Work = std::function<bool()>; ///< True when all was done that should be.

    std::string title;  ///< Printed before anything else.
    QString entityName; ///< Gives the output its name.
    FailureRule failureRule{};
    std::function<bool()> check; ///< Tells the first thing that is wrong with the form; true when nothing is.
    std::function<ArgumentDictionary()> getArguments; ///< What the script is given.
    std::variant<TextScript, FilesScript> script;     ///< Runs it, which gives one HDL file or a directory of files.

    /// True when the output is a directory of files.
    bool isDirectory() const { return std::holds_alternative<FilesScript>(script); }

    /// The generation as the console tells it: the title, then, indented, what the check and the work print and
    /// "Generating done". When the check fails, which has told why, "Generating failed" ends it; when the work throws,
    /// the exception as one error and the rule's closing line, which ends a work that returns false as well. A wrapped
    /// exception keeps its named fields and location; what has no location is located at `caller`. Returns true when
    /// the generation is done.
    bool run(const Brindle::Location& caller, const Work& work) const;

    /// The work alone, without check, title and closing line; what it throws is shown as `run` does it. It is not begun
    /// where the date of generated files is wrong.
    bool runGuarded(const Brindle::Location& caller, const Work& work) const;
};

} // namespace Velmora
