#include <velmora/generation/OutputDirectory.h>

#include <velmora/generation/HdlFile.h>

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

QString getPath(const QString& directory, const QString& name) {
    return directory + "/" + name;
}

} // namespace

void requireInside(const QString& directory, const GeneratedFiles& files, const Brindle::Location& caller) {
    for (const auto& [name, content] : files) {
        if (!staysInside(name) || !staysInside(getDirectories(name))) {
            throw Brindle::located(Brindle::Fatal("Unable to open file " + getPath(directory, name).toStdString()),
                                   caller);
        }
    }
}

QString makeDirectories(const QString& directory, const QString& name) {
    QDir(directory).mkpath("./" + getDirectories(name));
    return getPath(directory, name);
}

void writeGeneratedFiles(const QString& directory, const GeneratedFiles& files, const Brindle::Location& caller) {
    requireInside(directory, files, caller);
    for (const auto& [name, content] : files)
        HdlFile(makeDirectories(directory, name), caller).write(content);
}

} // namespace Velmora
