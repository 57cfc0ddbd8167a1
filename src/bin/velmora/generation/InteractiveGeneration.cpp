#include <velmora/generation/InteractiveGeneration.h>

#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/FileDialog.h>

#include <QDir>
#include <QSettings>

#include <string>
#include <utility>
#include <vector>

namespace Velmora {

namespace {

/// Paths of files that were written.
using Paths = std::vector<std::string>;

void addPath(Paths& paths, const QString& path) {
    paths.push_back(QDir::cleanPath(QDir::current().absoluteFilePath(path)).toStdString());
}

void generateInto(const QString& path, const Generation::TextScript& script, Paths& written) {
    HdlFile file(path);
    file.write(script());
    addPath(written, path);
}

void generateInto(const QString& directory, const Generation::FilesScript& script, Paths& written) {
    writeGeneratedFiles(directory, script(), [&written](const QString& path, const QString& content) {
        HdlFile(path).write(content);
        addPath(written, path);
    });
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
    Paths written;
    const bool isDone = _generation.run(caller, [&] {
        std::visit([&](const auto& script) { generateInto(path, script, written); }, _generation.script);
        return true;
    });
    if (isDone)
        Brindle::console.tellFiles(written);
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
