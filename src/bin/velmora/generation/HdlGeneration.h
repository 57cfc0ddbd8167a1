#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

struct Generation;

/// Asks for a ".vhd" file, remembers it below "Filepath" in the settings group, and writes the text of the generation,
/// which is of the kind that gives one, into it with its protected regions enciphered. The file is emptied once the
/// form has passed its check and stays so when the generation fails. Nothing happens when the user cancels. The form is
/// the parent of the dialog.
void generateHdlFile(QWidget* form, const QString& settingsGroup, const Generation& generation);

} // namespace Velmora
