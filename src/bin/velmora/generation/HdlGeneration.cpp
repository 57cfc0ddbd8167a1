#include <velmora/generation/HdlGeneration.h>

#include <velmora/generation/Generation.h>
#include <velmora/generation/HdlFile.h>
#include <velmora/settings/SettingsKeys.h>

#include <Brindle/widgets/FileDialog.h>

#include <QDir>
#include <QSettings>

namespace Velmora {

namespace {

/// The file that the user chooses and the settings remember; empty when the user cancels.
QString chooseFile(QWidget* form, const QString& settingsGroup, const QString& entityName) {
    QSettings settings;
    settings.beginGroup(settingsGroup);
    const QString defaultPath = QDir::currentPath() + "/" + entityName + ".vhd";
    const QString path = Brindle::FileDialog::getSaveFileName(
        form, QObject::tr("Choose a file name"), settings.value(SettingsKeys::filepath, defaultPath).toString(),
        QStringLiteral("VHDL (*.vhd)"));
    if (!path.isEmpty()) {
        settings.setValue(SettingsKeys::filepath, path);
        settings.sync();
    }
    return path;
}

} // namespace

void generateHdlFile(QWidget* form, const QString& settingsGroup, const Generation& generation) {
    const QString path = chooseFile(form, settingsGroup, generation.entityName);
    if (path.isEmpty())
        return;
    runGeneration(generation.title, generation.failureRule, generation.caller, generation.check, [&] {
        HdlFile file(path, generation.caller);
        file.write(std::get<Generation::TextRun>(generation.run)());
    });
}

} // namespace Velmora
