#include <Brindle/widgets/RegularFile.h>

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Brindle {

RegularFile RegularFile::read(const std::string& filename, std::size_t limit) {
    QFile file(QString::fromStdString(filename));
    const QFileInfo info(file);
    if (!info.exists())
        return {{}, "There is no such file"};
    if (!info.isFile())
        return {{}, "It is no regular file"};
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {{}, "It may not be read"};
    std::string text = file.read(static_cast<qint64>(limit)).toStdString();
    if (file.error() != QFileDevice::NoError)
        return {{}, file.errorString().toStdString()};
    return {std::move(text), {}};
}

} // namespace Brindle
