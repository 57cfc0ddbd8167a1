#include <velmora/configuration/ConfigurationFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/RegularFile.h>

#include <QObject>
#include <QSaveFile>
#include <QTextCodec>

#include <algorithm>

namespace Velmora {

namespace {

constexpr std::size_t largestFile = 1024UL * 1024; // bytes

bool isUtf8(std::string_view text) {
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), static_cast<int>(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

void requireUtf8(std::string_view text, const std::string& filename) {
    for (int line = 1; !text.empty(); ++line) {
        const auto end = std::min(text.find('\n'), text.size() - 1) + 1;
        if (!isUtf8(text.substr(0, end))) {
            throw Brindle::located(Brindle::Critical("Line is not UTF-8, save the file in this encoding"), BRINDLE_HERE,
                                   {{"filename", filename}, {"line", std::to_string(line)}});
        }
        text.remove_prefix(end);
    }
}

} // namespace

Configuration readConfigurationFile(const QString& filename) {
    const std::string name = filename.toStdString();
    const auto file = Brindle::RegularFile::read(name, largestFile + 1);
    if (!file.isRead()) {
        throw Brindle::located(Brindle::Critical("Unable to open configuration file"), BRINDLE_HERE,
                               {{"filename", name}, {"reason", file.reason}});
    }
    if (file.text.size() > largestFile) {
        throw Brindle::located(Brindle::Critical("Configuration file is larger than 1 MiB"), BRINDLE_HERE,
                               {{"filename", name}});
    }
    requireUtf8(file.text, name);
    return Configuration::parse(file.text, name);
}

void writeConfigurationFile(const QString& filename, const Configuration& configuration) {
    const QByteArray content = QByteArray::fromStdString(configuration.getContent());
    QSaveFile file(filename);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        throw Brindle::located(Brindle::Critical("Unable to write configuration file"), BRINDLE_HERE,
                               {{"filename", filename.toStdString()}, {"reason", file.errorString().toStdString()}});
    }
}

QString getConfigurationFilter() {
    return QObject::tr("Velmora configuration (*.velmora)");
}

} // namespace Velmora
