#include <velmora-generate/Catalogue.h>

#include <velmora/catalogue/ConfigurationOwner.h>
#include <velmora/catalogue/DescriptionFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>
#include <Brindle/tool/UsageError.h>

#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <tuple>

namespace GenerateTool {

namespace {

using Velmora::Configuration;
using Velmora::IPDescription;

std::string getPrefix() {
    const char* const prefix = std::getenv("ORVANE_PREFIX");
    const std::string wanted = "it should name the directory that holds share/velmora";
    if (!prefix || !*prefix)
        throw Brindle::located(Brindle::UsageError("ORVANE_PREFIX is not set, " + wanted), BRINDLE_HERE);
    if (!QFileInfo(QString::fromUtf8(prefix) + "/share/velmora").isDir())
        throw Brindle::located(Brindle::UsageError("ORVANE_PREFIX is " + Brindle::inQuotes(prefix) + ", " + wanted),
                               BRINDLE_HERE);
    return prefix;
}

bool isEqual(const std::string& text, const QString& wanted) {
    return QString::fromStdString(text).compare(wanted, Qt::CaseInsensitive) == 0;
}

} // namespace

Catalogue::Catalogue() {
    for (const std::string& filename : Velmora::findDescriptionFiles(getPrefix())) {
        try {
            _ips.push_back(
                {filename, Brindle::locatedAt(BRINDLE_HERE, [&] { return Velmora::readDescriptionFile(filename); })});
        } catch (const Brindle::Critical& exception) {
            _wrongDescriptions.push_back(exception);
        }
    }
    std::ranges::sort(_ips, {}, [](const InstalledIP& ip) {
        return std::tie(ip.description.name, ip.description.company, ip.description.uid);
    });
}

const std::vector<InstalledIP>& Catalogue::getAll() const {
    showWrongDescriptions();
    return _ips;
}

void Catalogue::showWrongDescriptions() const {
    for (const Brindle::Critical& exception : _wrongDescriptions)
        Brindle::console.error(exception);
}

InstalledIP Catalogue::getNamed(const QString& name) const {
    const auto isNamed = [&name](const IPDescription& description) {
        return isEqual(description.name, name) || isEqual(description.uid, name);
    };
    std::vector<InstalledIP> ips;
    std::ranges::copy_if(_ips, std::back_inserter(ips), isNamed, &InstalledIP::description);
    if (ips.size() == 1)
        return ips.front();
    if (ips.empty())
        showWrongDescriptions();
    const std::string quoted = Brindle::inQuotes(name.toStdString());
    throw Brindle::located(Brindle::UsageError(ips.empty()
                                                   ? "No installed IP has the name or uid " + quoted +
                                                         ", 'velmora-generate list' shows those that are"
                                                   : "Several installed IPs are named " + quoted + ", give the uid"),
                           BRINDLE_HERE);
}

InstalledIP Catalogue::getConfigured(const Configuration& configuration) const {
    const auto owner = Velmora::findOwner(_ips, configuration, &InstalledIP::description);
    if (owner == _ips.end()) {
        showWrongDescriptions();
        configuration.refuseIP("No installed IP is " +
                               Velmora::getIPLabel(configuration.getName(), configuration.getCompany()) +
                               ", 'velmora-generate list' shows those that are");
    }
    return *owner;
}

std::unique_ptr<Velmora::IPLeaf> loadForm(const InstalledIP& ip) {
    auto leaf = std::make_unique<Velmora::IPLeaf>(ip.descriptionFilename, Velmora::IPLeaf::Content::FormOnly);
    if (!leaf->getForm()) {
        throw Brindle::located(Brindle::Critical("IP " + Velmora::getIPLabel(leaf->getName(), leaf->getCompany()) +
                                                 " has no form, it cannot be generated"),
                               BRINDLE_HERE);
    }
    return leaf;
}

} // namespace GenerateTool
