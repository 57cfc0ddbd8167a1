#pragma once

#include <velmora/GenerateFlow.h>

#include <Brindle/Location.h>

#include <QString>

#include <functional>
#include <string>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

/// What the generation of a single HDL file needs from its form.
struct HdlGeneration {
    QWidget* form;         ///< Parent of the dialog.
    QString settingsGroup; ///< Where the last path is kept, below "Filepath".
    QString entityName;    ///< Gives the first proposal for the file name.
    std::string title;     ///< Printed before anything else.
    FailureRule failureRule;
    Brindle::Location caller;
    std::function<bool()> check;      ///< Tells the first thing that is wrong with the form; true when nothing is.
    std::function<QString()> getText; ///< Runs the script.
};

/// Asks for a ".vhd" file, remembers it, and writes the generated text into it with its protected regions enciphered.
/// The file is emptied once the form has passed its check and stays so when the generation fails. Nothing happens when
/// the user cancels.
void generateHdlFile(const HdlGeneration& generation);

} // namespace Velmora
