#include <velmora/HdlFile.h>

#include <velmora/Common.h>
#include <velmora/ProtectedRegions.h>

#include <Brindle/Exception.h>

namespace Velmora {

HdlFile::HdlFile(const QString& path, const Brindle::Location& caller) : _file(path), _caller(caller) {
    if (!_file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate))
        throw Brindle::located(Brindle::Fatal("Unable to open file " + path.toStdString()), _caller);
}

void HdlFile::write(const QString& text) {
    const std::string path = _file.fileName().toStdString();
    const std::string output = protectRegions(text.toLatin1().toStdString(), getLanguage(path), getEncrypted, _caller);
    const auto size = static_cast<qint64>(output.size());
    if (_file.write(output.data(), size) != size || !_file.flush()) {
        throw Brindle::located(Brindle::Fatal("Unable to write file " + path), _caller,
                               {{"reason", _file.errorString().toStdString()}});
    }
    _file.close();
}

} // namespace Velmora
