#include <velmora-generate/ConfiguredIP.h>

#include <velmora/configuration/ConfigurationFile.h>

#include <Brindle/files/InputFile.h>

#include <QFileInfo>

namespace GenerateTool {

Velmora::Configuration readConfiguration(const QString& filename) {
    const QFileInfo file(filename);
    const bool isStream = filename == Brindle::standardStream || (file.exists() && !file.isFile() && !file.isDir());
    if (!isStream)
        return Velmora::readConfigurationFile(filename);
    const std::string name = filename.toStdString();
    try {
        return Velmora::parseConfiguration(Brindle::readInputFile(name, Velmora::largestConfiguration), name);
    } catch (const Brindle::Fatal& failure) {
        throw Brindle::reworded<Brindle::Critical>("Unable to open configuration file", failure);
    }
}

ConfiguredIP loadConfigured(const Catalogue& catalogue, const QString& filename) {
    Velmora::Configuration configuration = readConfiguration(filename);
    InstalledIP ip = catalogue.getConfigured(configuration);
    auto leaf = loadForm(ip);
    leaf->setConfiguration(configuration);
    return {std::move(configuration), std::move(ip), std::move(leaf)};
}

} // namespace GenerateTool
