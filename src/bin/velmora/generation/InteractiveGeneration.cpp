#include <velmora/generation/InteractiveGeneration.h>

#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/FileDialog.h>

#include <QDir>
#include <QSettings>

#include <utility>

namespace Velmora {

namespace {

void generateInto(const QString& path, const Generation::TextScript& script) {
    HdlFile file(path);
    file.write(script());
}

void generateInto(const QString& directory, const Generation::FilesScript& script) {
    writeGeneratedFiles(directory, script(),
                        [](const QString& path, const QString& content) { HdlFile(path).write(content); });
}

} // namespace

InteractiveGeneration::InteractiveGeneration(QWidget* form, QString settingsGroup, Generation generation,
                                             std::function<void()> storeForm)
    : _form(form),
      _settingsGroup(std::move(settingsGroup)),
      _generation(std::move(generation)),
      _storeForm(std::move(storeForm)) {}

void InteractiveGeneration::run(const Brindle::Location& caller) const {
    const QString path = choosePath();
    if (path.isEmpty())
        return;
    _storeForm();
    Brindle::console.separate();
    _generation.run(caller, [&] {
        std::visit([&](const auto& script) { generateInto(path, script); }, _generation.script);
        return true;
    });
}

/// The place that the user chooses and the settings remember; empty when the user cancels.
QString InteractiveGeneration::choosePath() const {
    const bool isDirectory = _generation.isDirectory();
    const QString key = isDirectory ? "Path" : "Filepath";
    QSettings settings;
    settings.beginGroup(_settingsGroup);
    const QString defaultPath = QDir::currentPath() + "/" + _generation.entityName + (isDirectory ? "" : ".vhd");
    const QString path = askForPath(settings.value(key, defaultPath).toString());
    if (!path.isEmpty()) {
        settings.setValue(key, path);
        settings.sync();
    }
    return path;
}

QString InteractiveGeneration::askForPath(const QString& proposedPath) const {
    if (_generation.isDirectory())
        return Brindle::FileDialog::getDirectory(_form, QObject::tr("Choose a directory"), proposedPath);
    return Brindle::FileDialog::getSaveFileName(_form, QObject::tr("Choose a file name"), proposedPath,
                                                QStringLiteral("VHDL (*.vhd)"));
}

} // namespace Velmora
