#include <velmora/HdlFile.h>

#include <velmora/Common.h>
#include <velmora/ProtectedRegions.h>

#include <Brindle/Exception.h>

namespace Velmora {

HdlFile::HdlFile(const QString& path, const Brindle::Location& caller) : _file(path), _caller(caller) {
    if (!_file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate))
        throw Brindle::located(Brindle::Fatal("Unable to open file " + path.toStdString()), _caller);
}

std::string HdlFile::getContent(const QString& text, const QString& path, const Brindle::Location& caller) {
    return protectRegions(text.toLatin1().toStdString(), getLanguage(path.toStdString()), getEncrypted, caller);
}

void HdlFile::write(const QString& text) {
    const std::string output = getContent(text, _file.fileName(), _caller);
    const auto size = static_cast<qint64>(output.size());
    if (_file.write(output.data(), size) != size || !_file.flush()) {
        throw Brindle::located(Brindle::Fatal("Unable to write file " + _file.fileName().toStdString()), _caller,
                               {{"reason", _file.errorString().toStdString()}});
    }
    _file.close();
}

} // namespace Velmora
