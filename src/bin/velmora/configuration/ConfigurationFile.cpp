#include <velmora/configuration/ConfigurationFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/files/OutputFiles.h>
#include <Brindle/files/RegularFile.h>
#include <Brindle/widgets/Utf8.h>

#include <QFile>
#include <QObject>

namespace Velmora {

Configuration readConfigurationFile(const QString& filename) {
    const std::string name = filename.toStdString();
    const auto file = Brindle::RegularFile::read(name, largestConfiguration + 1);
    if (!file.isRead()) {
        throw Brindle::located(Brindle::Critical("Unable to open configuration file"), BRINDLE_HERE,
                               {{"filename", name}, {"reason", file.reason}});
    }
    return parseConfiguration(file.text, name);
}

Configuration parseConfiguration(const std::string& text, const std::string& filename) {
    if (text.size() > largestConfiguration) {
        throw Brindle::located(Brindle::Critical("Configuration file is larger than 1 MiB"), BRINDLE_HERE,
                               {{"filename", filename}});
    }
    if (const auto line = Brindle::findLineOutsideUtf8(text)) {
        throw Brindle::located(Brindle::Critical("Line is not UTF-8, save the file in this encoding"), BRINDLE_HERE,
                               {{"filename", filename}, {"line", Brindle::getLabel(*line)}});
    }
    return Configuration::parse(text, filename);
}

void writeConfigurationFile(const QString& filename, const Configuration& configuration) {
    Brindle::OutputFiles output(BRINDLE_HERE);
    try {
        output.add(QFile::encodeName(filename).toStdString(), configuration.getContent());
        output.commit();
    } catch (const Brindle::Fatal& failure) {
        throw Brindle::reworded<Brindle::Critical>("Unable to write configuration file", failure);
    }
}

QString getConfigurationFilter() {
    return QObject::tr("Velmora configuration (*.velmora)");
}

} // namespace Velmora
