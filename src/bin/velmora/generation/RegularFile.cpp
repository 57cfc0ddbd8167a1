#include <velmora/generation/RegularFile.h>

#include <QFile>
#include <QFileInfo>

namespace Velmora {

std::optional<std::string> readRegularFile(const std::string& filename, std::size_t limit) {
    QFile file(QString::fromStdString(filename));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    return file.read(static_cast<qint64>(limit)).toStdString();
}

} // namespace Velmora
