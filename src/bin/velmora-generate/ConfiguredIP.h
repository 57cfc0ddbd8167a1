#pragma once

#include <velmora-generate/Catalogue.h>

namespace GenerateTool {

/// An IP with the values of a configuration file in its form.
struct ConfiguredIP {
    Velmora::Configuration configuration;
    InstalledIP ip;
    std::unique_ptr<Velmora::IPLeaf> leaf;
};

/// From a file, a pipe, or "-" for standard input. Throws Brindle::Critical with the field "filename".
Velmora::Configuration readConfiguration(const QString& filename);

/// The file may be a pipe, or "-" for standard input. Throws Brindle::Critical, mostly with the fields "filename" and
/// "line", for a file that cannot be read or does not fit an installed IP.
ConfiguredIP loadConfigured(const Catalogue& catalogue, const QString& filename);

} // namespace GenerateTool
