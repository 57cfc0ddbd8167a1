#include <velmora/configuration/ConfigurationFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>
#include <Brindle/widgets/RegularFile.h>

#include <QObject>
#include <QSaveFile>
#include <QTextCodec>

namespace Velmora {

namespace {

bool isUtf8(std::string_view text) {
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), static_cast<int>(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

void requireUtf8(std::string_view text, const std::string& filename) {
    Brindle::TextLines lines(text);
    while (const auto line = lines.nextOrLast()) {
        if (!isUtf8(*line)) {
            throw Brindle::located(Brindle::Critical("Line is not UTF-8, save the file in this encoding"), BRINDLE_HERE,
                                   {{"filename", filename}, {"line", Brindle::getLabel(lines.getLineNumber())}});
        }
    }
}

} // namespace

Configuration readConfigurationFile(const QString& filename) {
    const std::string name = filename.toStdString();
    const auto file = Brindle::RegularFile::read(name, largestConfiguration + 1);
    if (!file.isRead()) {
        throw Brindle::located(Brindle::Critical("Unable to open configuration file"), BRINDLE_HERE,
                               {{"filename", name}, {"reason", file.reason}});
    }
    if (file.text.size() > largestConfiguration) {
        throw Brindle::located(Brindle::Critical("Configuration file is larger than 1 MiB"), BRINDLE_HERE,
                               {{"filename", name}});
    }
    return parseConfiguration(file.text, name);
}

Configuration parseConfiguration(const std::string& text, const std::string& filename) {
    requireUtf8(text, filename);
    return Configuration::parse(text, filename);
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
