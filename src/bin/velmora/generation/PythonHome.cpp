#include <velmora/generation/PythonHome.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace Velmora {

std::string getPythonHome() {
    const QDir prefix(QCoreApplication::applicationDirPath() + QStringLiteral("/../..")); // over libexec/velmora
    const QString carried = QDir::cleanPath(prefix.filePath(QStringLiteral(VELMORA_CARRIED_PYTHON)));
    return QDir(carried).exists() ? QFile::encodeName(carried).toStdString() : VELMORA_BUILD_PYTHON;
}

} // namespace Velmora
