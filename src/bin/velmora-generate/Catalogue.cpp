#include <velmora-generate/Catalogue.h>

#include <velmora-generate/UsageError.h>
#include <velmora/DescriptionFile.h>

#include <Brindle/Console.h>
#include <Brindle/Exception.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace GenerateTool {

namespace {

using Velmora::Configuration;

std::string getPrefix() {
    if (const char* prefix = std::getenv("ORVANE_PREFIX"); prefix && *prefix)
        return prefix;
    throw Brindle::located(
        UsageError("ORVANE_PREFIX is not set, it should name the directory that holds share/velmora"), BRINDLE_HERE);
}

bool isEqual(const std::string& text, const QString& wanted) {
    return QString::fromStdString(text).compare(wanted, Qt::CaseInsensitive) == 0;
}

} // namespace

Catalogue::Catalogue() : _descriptionFilenames(Velmora::findDescriptionFiles(getPrefix())) {}

std::vector<InstalledIP> Catalogue::getAll() const {
    Content content = read();
    for (const Brindle::Critical& exception : content.wrongDescriptions)
        Brindle::console.error(exception);
    std::ranges::sort(content.ips, {}, [](const InstalledIP& ip) {
        return std::tie(ip.description.name, ip.description.company, ip.description.uid);
    });
    return content.ips;
}

Catalogue::Content Catalogue::read() const {
    Content content;
    for (const std::string& filename : _descriptionFilenames) {
        try {
            content.ips.push_back({filename, Velmora::readDescriptionFile(filename, BRINDLE_HERE)});
        } catch (const Brindle::Critical& exception) {
            content.wrongDescriptions.push_back(exception);
        }
    }
    return content;
}

InstalledIP Catalogue::getNamed(const QString& name) const {
    std::vector<InstalledIP> ips = read().ips;
    std::erase_if(ips, [&name](const InstalledIP& ip) {
        return !isEqual(ip.description.name, name) && !isEqual(ip.description.uid, name);
    });
    if (ips.size() == 1)
        return ips.front();
    const std::string quoted = "'" + name.toStdString() + "'";
    throw Brindle::located(UsageError(ips.empty() ? "No installed IP has the name or uid " + quoted +
                                                        ", 'velmora-generate list' shows those that are"
                                                  : "Several installed IPs are named " + quoted + ", give the uid"),
                           BRINDLE_HERE);
}

InstalledIP Catalogue::getConfigured(const Configuration& configuration) const {
    std::vector<InstalledIP> ips = read().ips;
    std::erase_if(ips, [&configuration](const InstalledIP& ip) {
        return ip.description.company != configuration.getCompany() || ip.description.name != configuration.getName();
    });
    if (ips.empty()) {
        configuration.refuseIP("No installed IP is '" + configuration.getName() + "' of " + configuration.getCompany() +
                               ", 'velmora-generate list' shows those that are");
    }
    const auto exact =
        std::ranges::find(ips, configuration.getUID(), [](const InstalledIP& ip) { return ip.description.uid; });
    return exact != ips.end() ? *exact : ips.front();
}

std::unique_ptr<Velmora::IPLeaf> loadForm(const InstalledIP& ip) {
    auto leaf = std::make_unique<Velmora::IPLeaf>(ip.descriptionFilename, Velmora::IPLeaf::Content::FormOnly);
    if (!leaf->getForm()) {
        throw Brindle::located(Brindle::Critical("IP '" + leaf->getName() + "' of " + leaf->getCompany() +
                                                 " has no form, it cannot be generated"),
                               BRINDLE_HERE);
    }
    return leaf;
}

} // namespace GenerateTool
