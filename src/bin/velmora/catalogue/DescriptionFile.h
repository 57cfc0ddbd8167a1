#pragma once

#include <velmora/rules/IPDescription.h>

#include <string>
#include <vector>

namespace Velmora {

/// The description files of the catalogue of an installation, in the order in which the file system returns their
/// directories.
std::vector<std::string> findDescriptionFiles(const std::string& prefix);

/// Reads a description file. Throws Brindle::Critical when it cannot be read, is larger than 16 MiB, is not UTF-8 or is
/// wrong.
IPDescription readDescriptionFile(const std::string& filename);

} // namespace Velmora
