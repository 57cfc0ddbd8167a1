#include <velmora-generate/Output.h>

#include <Brindle/tool/UsageError.h>

#include <QFileInfo>

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

bool isFileName(const QString& name) {
    return name != QLatin1String(".") && name != QLatin1String("..") && !name.contains('/') &&
           !name.contains(QChar::Null);
}

} // namespace

Output::Output(const std::optional<QString>& path, const QStringList& configurationFilenames)
    : _path(path), _isShared(configurationFilenames.size() > 1) {
    if (_path && _path->isEmpty())
        throw Brindle::located(Brindle::UsageError("The output has an empty name"), BRINDLE_HERE);
    if (_path == QLatin1String("-"))
        throw Brindle::located(Brindle::UsageError("The output should be a file or a directory, /dev/stdout shows it"),
                               BRINDLE_HERE);
    if (_path && _isShared && !QFileInfo(*_path).isDir()) {
        throw Brindle::located(Brindle::UsageError("'" + _path->toStdString() +
                                                   "' should be a directory, which takes the output of several files"),
                               BRINDLE_HERE);
    }
    for (const QString& filename : configurationFilenames)
        _configurations += toAbsolute(filename);
}

QString Output::take(const QString& configurationFilename, const QString& entityName, bool isDirectory) {
    const QString givenPath = getPath(configurationFilename, entityName, isDirectory);
    if (!isDirectory && givenPath.endsWith('/')) {
        throw Brindle::located(Brindle::Fatal("Unable to open file " + givenPath.toStdString()), BRINDLE_HERE,
                               {{"reason", "It names a directory, name the file"}});
    }
    const QString path = withoutEndSlashes(givenPath);
    const QString absolutePath = toAbsolute(path);
    if (_configurations.contains(absolutePath))
        throw Brindle::located(Brindle::Fatal("Output would replace the configuration " + path.toStdString()),
                               BRINDLE_HERE);
    if (_taken.contains(absolutePath)) {
        throw Brindle::located(Brindle::Fatal("Another configuration has the output " + path.toStdString() +
                                              " too, give their entities different names"),
                               BRINDLE_HERE);
    }
    _taken += absolutePath;
    return path;
}

QString Output::getPath(const QString& configurationFilename, const QString& entityName, bool isDirectory) const {
    if (!isNamedByEntity())
        return *_path;
    const QString name = isDirectory ? entityName : entityName + ".vhd";
    if (!isFileName(name)) {
        throw Brindle::located(Brindle::Fatal("Entity name makes no file name, name the output with --output"),
                               BRINDLE_HERE, {{"entity", entityName.toStdString()}});
    }
    const QString directory = withoutEndSlashes(_path.value_or(QFileInfo(configurationFilename).path()));
    return directory == QLatin1String(".") ? name : directory + "/" + name;
}

} // namespace GenerateTool
