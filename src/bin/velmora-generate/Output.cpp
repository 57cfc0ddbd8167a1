#include <velmora-generate/Output.h>

#include <Brindle/core/Text.h>
#include <Brindle/files/InputFile.h>
#include <Brindle/files/OutputPlace.h>
#include <Brindle/tool/UsageError.h>

#include <QFileInfo>

#include <system_error>
#include <utility>

#include <unistd.h>

namespace GenerateTool {

namespace {

/// Symbolic links followed as far as the path exists.
QString toAbsolute(const QString& path) {
    const QFileInfo file(path);
    if (file.exists())
        return file.canonicalFilePath();
    const QString directory = QFileInfo(file.path()).canonicalFilePath();
    return (directory.isEmpty() ? file.absolutePath() : directory) + "/" + file.fileName();
}

/// Nothing else is made simpler: what ".." means behind a symbolic link only the file system knows.
QString withoutEndSlashes(QString path) {
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

Brindle::OutputPlace findPlace(const QString& path) {
    try {
        return Brindle::OutputPlace::find(path.toStdString());
    } catch (const std::system_error&) { // links in a circle, which opening it will tell
        return {};
    }
}

bool isStreamAt(const Brindle::OutputPlace& place) {
    return place.descriptor || place.isDevice;
}

bool isFileName(const QString& name) {
    return name != QLatin1String(".") && name != QLatin1String("..") && !name.contains('/') &&
           !name.contains(QChar::Null);
}

} // namespace

Output::Output(const std::optional<QString>& path, const QStringList& configurationFilenames, bool tellsJson)
    : _path(path), _isDirectory(path && *path != Brindle::standardStream && QFileInfo(*path).isDir()) {
    if (_path && _path->isEmpty())
        throw Brindle::located(Brindle::UsageError("The output has an empty name"), BRINDLE_HERE);
    if (_path && !_isDirectory && configurationFilenames.size() > 1) {
        throw Brindle::located(Brindle::UsageError(Brindle::inQuotes(_path->toStdString()) +
                                                   " should be a directory, which takes the output of several files"),
                               BRINDLE_HERE);
    }
    if (_path) {
        const auto place = findPlace(*_path);
        _isStream = isStreamAt(place);
        _isStandardOutput = place.descriptor == STDOUT_FILENO;
    }
    if (_isStandardOutput && tellsJson)
        throw Brindle::located(Brindle::UsageError("Standard output cannot take both the output and --json"),
                               BRINDLE_HERE);
    if (_isStream && !tellsJson)
        _reserved.emplace();
    for (const QString& filename : configurationFilenames)
        if (!isStreamAt(findPlace(filename)))
            _configurations += toAbsolute(filename);
}

QString Output::take(const QString& configurationFilename, const QString& entityName, bool isDirectory) {
    if (_isStream && isDirectory) {
        throw Brindle::located(Brindle::Fatal("Several files need a directory, " +
                                              Brindle::inQuotes(_path->toStdString()) + " takes one text"),
                               BRINDLE_HERE);
    }
    QString givenPath = getPath(configurationFilename, entityName, isDirectory);
    if (_isStream)
        return givenPath;
    if (!isDirectory && givenPath.endsWith('/')) {
        throw Brindle::located(
            Brindle::Fatal("Unable to write file"), BRINDLE_HERE,
            {{"filename", givenPath.toStdString()}, {"reason", "It names a directory, name the file"}});
    }
    const QString path = withoutEndSlashes(givenPath);
    const QString absolutePath = toAbsolute(path);
    if (_configurations.contains(absolutePath))
        throw Brindle::located(Brindle::Fatal("Output would replace the configuration " + path.toStdString()),
                               BRINDLE_HERE);
    if (isTaken(absolutePath) || (_claim && _claim(absolutePath))) {
        throw Brindle::located(Brindle::Fatal("Another configuration has the output " + path.toStdString() +
                                              " too, give their entities different names"),
                               BRINDLE_HERE);
    }
    setTaken(path);
    return path;
}

void Output::setTaken(const QString& path) {
    _taken += toAbsolute(path);
}

void Output::add(Brindle::OutputFiles& files, const QString& path, std::string content) const {
    if (_isStandardOutput)
        files.addTo(_reserved->get().get(), path.toStdString(), std::move(content));
    else
        files.add(path.toStdString(), std::move(content));
}

QString Output::getPath(const QString& configurationFilename, const QString& entityName, bool isDirectory) const {
    if (!isNamedByEntity())
        return *_path;
    const QString name = isDirectory ? entityName : entityName + ".vhd";
    if (!isFileName(name)) {
        throw Brindle::located(Brindle::Fatal("Entity name makes no file name, name the output with --output"),
                               BRINDLE_HERE, {{"entity", entityName.toStdString()}});
    }
    const QString beside = isStreamAt(findPlace(configurationFilename)) ? "." : QFileInfo(configurationFilename).path();
    const QString directory = withoutEndSlashes(_path.value_or(beside));
    return directory == QLatin1String(".") ? name : directory + "/" + name;
}

} // namespace GenerateTool
