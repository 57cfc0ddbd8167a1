#include <velmora-generate/ConfiguredIP.h>

#include <velmora/configuration/ConfigurationFile.h>

namespace GenerateTool {

ConfiguredIP loadConfigured(const Catalogue& catalogue, const QString& filename) {
    Velmora::Configuration configuration = Velmora::readConfigurationFile(filename);
    InstalledIP ip = catalogue.getConfigured(configuration);
    auto leaf = loadForm(ip);
    leaf->setConfiguration(configuration);
    return {std::move(configuration), std::move(ip), std::move(leaf)};
}

} // namespace GenerateTool
