#include <velmora/generation/HdlFile.h>

#include <velmora/rules/Common.h>
#include <velmora/rules/ProtectedRegions.h>

#include <Brindle/core/Exception.h>

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
    _file.close();
}

void HdlFile::writeBytes(std::string_view bytes) {
    while (!bytes.empty()) {
        // A full disk may take a part and refuse the rest.
        const qint64 count = _file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        if (count <= 0) {
            const std::string reason = _file.errorString().toStdString();
            _file.resize(0); // half a description could be taken for a whole one
            throw Brindle::withFields(Brindle::Fatal("Unable to write file " + _file.fileName().toStdString()),
                                      {{"reason", reason}});
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace Velmora
