#include <velmora-generate/ConfiguredIP.h>

#include <velmora/configuration/ConfigurationFile.h>

#include <Brindle/core/TextLines.h>
#include <Brindle/files/InputFile.h>

namespace GenerateTool {

namespace {

Velmora::Configuration readConfiguration(const QString& filename) {
    if (filename != QLatin1String(Brindle::standardStream))
        return Velmora::readConfigurationFile(filename);
    const std::string text = Brindle::readInputFile(Brindle::standardStream, Velmora::largestConfiguration);
    return Velmora::parseConfiguration(Brindle::withLineFeeds(text), Brindle::standardStream);
}

} // namespace

ConfiguredIP loadConfigured(const Catalogue& catalogue, const QString& filename) {
    Velmora::Configuration configuration = readConfiguration(filename);
    InstalledIP ip = catalogue.getConfigured(configuration);
    auto leaf = loadForm(ip);
    leaf->setConfiguration(configuration);
    return {std::move(configuration), std::move(ip), std::move(leaf)};
}

} // namespace GenerateTool
