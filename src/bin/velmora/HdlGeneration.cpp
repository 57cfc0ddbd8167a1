#include <velmora/HdlGeneration.h>

#include <velmora/HdlFile.h>
#include <velmora/SettingsKeys.h>

#include <Brindle/FileDialog.h>

#include <QDir>
#include <QSettings>

namespace Velmora {

namespace {

/// The file that the user chooses and the settings remember; empty when the user cancels.
QString chooseFile(const HdlGeneration& generation) {
    QSettings settings;
    settings.beginGroup(generation.settingsGroup);
    const QString defaultPath = QDir::currentPath() + "/" + generation.entityName + ".vhd";
    const QString path = Brindle::FileDialog::getSaveFileName(
        generation.form, QObject::tr("Choose a file name"),
        settings.value(SettingsKeys::filepath, defaultPath).toString(), QStringLiteral("VHDL (*.vhd)"));
    if (!path.isEmpty()) {
        settings.setValue(SettingsKeys::filepath, path);
        settings.sync();
    }
    return path;
}

} // namespace

void generateHdlFile(const HdlGeneration& generation) {
    const QString path = chooseFile(generation);
    if (path.isEmpty())
        return;
    runGeneration(generation.title, generation.failureRule, generation.caller, generation.check, [&] {
        HdlFile file(path, generation.caller);
        file.write(generation.getText());
    });
}

} // namespace Velmora
