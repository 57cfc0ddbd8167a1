#include <Brindle/widgets/PathParts.h>

#include <QDir>
#include <QFileInfo>

namespace Brindle {

PathParts PathParts::split(const QString& path) {
    if (path.isEmpty())
        return {QDir::currentPath(), QString()};
    const QString whole = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QString folder = QFileInfo(whole).absolutePath();
    while (!QFileInfo(folder).isDir())
        folder = QFileInfo(folder).absolutePath();
    return {folder, QDir(folder).relativeFilePath(whole)};
}

} // namespace Brindle
