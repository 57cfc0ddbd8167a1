#pragma once

#include <velmora/Configuration.h>
#include <velmora/IPDescription.h>
#include <velmora/IPLeaf.h>

#include <Brindle/Exception.h>

#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace GenerateTool {

/// An IP of the installation.
struct InstalledIP {
    std::string descriptionFilename;
    Velmora::IPDescription description;
};

/// The IPs of the installation that the variable ORVANE_PREFIX names. The wrong description of another IP disturbs
/// nobody who asks for one.
class Catalogue {
public:
    /// Throws UsageError when the variable is not set.
    Catalogue();

    /// Every IP, by name and company. A description that is wrong is shown as an error and left out.
    std::vector<InstalledIP> getAll() const;
    /// The IP of that name or unique identifier, in either case. Throws UsageError when there is none or more than one.
    InstalledIP getNamed(const QString& name) const;
    /// The IP that a configuration is for: at least the company and the name are its. Throws Brindle::Critical when
    /// there is none.
    InstalledIP getConfigured(const Velmora::Configuration& configuration) const;

private:
    struct Content {
        std::vector<InstalledIP> ips;
        std::vector<Brindle::Critical> wrongDescriptions;
    };

    Content read() const;

    const std::vector<std::string> _descriptionFilenames;
};

/// The form of an IP. Throws Brindle::Critical when it has none.
std::unique_ptr<Velmora::IPLeaf> loadForm(const InstalledIP& ip);

} // namespace GenerateTool
