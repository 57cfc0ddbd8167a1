#include <velmora/generation/HdlFile.h>

#include <velmora/rules/Common.h>
#include <velmora/rules/ProtectedRegions.h>

#include <Brindle/core/Exception.h>

#include <sys/stat.h>

namespace Velmora {

HdlFile::HdlFile(const QString& path) : _file(path) {
    const auto mode = QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate | QIODevice::Unbuffered;
    if (!_file.open(mode))
        throw Brindle::Fatal("Unable to open file " + path.toStdString());
}

std::string HdlFile::getContent(const QString& text, const QString& path) {
    return protectRegions(text.toLatin1().toStdString(), getLanguage(path.toStdString()), getEncrypted);
}

void HdlFile::write(const QString& text) {
    writeBytes(getContent(text, _file.fileName()));
    requirePlace();
    _file.close();
}

/// A file that was removed or replaced since it was opened is written without a trace.
void HdlFile::requirePlace() const {
    struct stat written {};
    struct stat named {};
    const QByteArray path = QFile::encodeName(_file.fileName());
    if (fstat(_file.handle(), &written) != 0 || stat(path.constData(), &named) != 0 || written.st_dev != named.st_dev ||
        written.st_ino != named.st_ino)
        refuse("It was removed or replaced in the meantime");
}

void HdlFile::refuse(const std::string& reason) const {
    throw Brindle::withFields(Brindle::Fatal("Unable to write file " + _file.fileName().toStdString()),
                              {{"reason", reason}});
}

void HdlFile::writeBytes(std::string_view bytes) {
    while (!bytes.empty()) {
        // A full disk may take a part and refuse the rest.
        const qint64 count = _file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (count <= 0) {
            const std::string reason = _file.errorString().toStdString();
            _file.resize(0); // half a description could be taken for a whole one
            refuse(reason);
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace Velmora
