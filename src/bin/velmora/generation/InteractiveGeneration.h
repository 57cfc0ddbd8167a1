#pragma once

#include <velmora/generation/Generation.h>

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

/// What the Generate button of a form starts.
class InteractiveGeneration {
public:
    /// The form is kept, not owned: the parent of the dialog. In the settings group the place of the output is
    /// remembered.
    InteractiveGeneration(QWidget* form, QString settingsGroup, Generation generation, std::function<void()> storeForm);

    /// Asks for a ".vhd" file, which "Filepath" remembers, or for a directory, which "Path" remembers, and writes there
    /// what the script returns, with its protected regions enciphered. A file is emptied once the form has passed its
    /// check and stays so when the generation fails. The console is told which files were written. Once there is a
    /// place the form is stored, so that what the user filled in outlives a script that never ends. Nothing happens
    /// when the user cancels. Errors that have no location are located at `caller`.
    void run(const Brindle::Location& caller) const;

private:
    QString choosePath() const;
    QString askForPath(const QString& proposedPath) const;

    QWidget* const _form;
    const QString _settingsGroup;
    const Generation _generation;
    const std::function<void()> _storeForm;
};

} // namespace Velmora
