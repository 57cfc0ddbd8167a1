#include <velmora/generation/GeneratedFiles.h>

#include <Brindle/core/Exception.h>

#include <QDir>

namespace Velmora {

namespace {

bool staysInside(const QString& relativePath) {
    const QString clean = QDir::cleanPath(relativePath);
    return !clean.startsWith('/') && clean != QLatin1String("..") && !clean.startsWith(QLatin1String("../")) &&
           !clean.contains(QChar::Null);
}

/// The directories that a file's name asks for: the name without any occurrence of its last component's text.
QString getDirectories(QString name) {
    const QString lastComponent = name.section('/', -1);
    return lastComponent.isEmpty() ? name : name.remove(lastComponent);
}

/// Below the directory even if it begins with "/", as the rest of "top/top" does.
QString toBelow(const QString& directories) {
    return "./" + directories;
}

QString getPath(const QString& directory, const QString& name) {
    return directory + "/" + name;
}

} // namespace

void requireInside(const QString& directory, const GeneratedFiles& files) {
    for (const auto& [name, content] : files) {
        if (!staysInside(name) || !staysInside(toBelow(getDirectories(name))))
            throw Brindle::Fatal("Unable to open file " + getPath(directory, name).toStdString());
    }
}

void writeGeneratedFiles(const QString& directory, const GeneratedFiles& files,
                         const std::function<void(const QString& path, const QString& content)>& write) {
    requireInside(directory, files);
    for (const auto& [name, content] : files) {
        QDir(directory).mkpath(toBelow(getDirectories(name)));
        write(getPath(directory, name), content);
    }
}

} // namespace Velmora
