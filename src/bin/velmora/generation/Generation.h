#pragma once

#include <velmora/generation/GenerateFlow.h>
#include <velmora/generation/GeneratedFiles.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Location.h>

#include <QString>

#include <functional>
#include <string>
#include <variant>

namespace Velmora {

/// What a form generates from its values, wherever the output goes. It is valid as long as the form.
struct Generation {
    using TextRun = std::function<QString()>;
    using FilesRun = std::function<GeneratedFiles()>;

    std::string title;  ///< Printed before anything else.
    QString entityName; ///< Gives the output its name.
    FailureRule failureRule;
    Brindle::Location caller;    ///< Of errors that are not in-house ones.
    std::function<bool()> check; ///< Tells the first thing that is wrong with the form; true when nothing is.
    std::function<ArgumentDictionary()> getArguments; ///< What the script is given.
    std::variant<TextRun, FilesRun> run; ///< Runs the script, which gives one HDL file or a directory of files.
};

} // namespace Velmora
