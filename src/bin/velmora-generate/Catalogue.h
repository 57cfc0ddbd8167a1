#pragma once

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/rules/Configuration.h>
#include <velmora/rules/IPDescription.h>

#include <Brindle/core/Exception.h>

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
    /// Reads the descriptions. Throws UsageError when the variable does not name an installation.
    Catalogue();

    /// Every IP, by name and company. A description that is wrong is shown as an error and left out.
    const std::vector<InstalledIP>& getAll() const;
    /// The IP of that name or unique identifier, in either case. Throws UsageError when there is none or more than one.
    InstalledIP getNamed(const QString& name) const;
    /// The IP that a configuration is for. Throws Brindle::Critical when there is none.
    InstalledIP getConfigured(const Velmora::Configuration& configuration) const;

private:
    /// As errors; where an IP is missing, one of them may be it.
    void showWrongDescriptions() const;

    std::vector<InstalledIP> _ips; // by name and company
    std::vector<Brindle::Critical> _wrongDescriptions;
};

/// The form of an IP. Throws Brindle::Critical when it has none.
std::unique_ptr<Velmora::IPLeaf> loadForm(const InstalledIP& ip);

} // namespace GenerateTool
