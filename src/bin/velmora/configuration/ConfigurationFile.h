#pragma once

#include <velmora/rules/Configuration.h>

#include <QString>

#include <cstddef>
#include <string>

namespace Velmora {

inline constexpr std::size_t largestConfiguration = 1024UL * 1024; ///< Bytes of a file.

/// Reads a configuration file. Throws Brindle::Critical with the fields "filename" and "reason" when it cannot be
/// read, with "filename" when it is larger than 1 MiB, with "filename" and "line" when it is not UTF-8, and what
/// `Configuration::parse` throws.
Configuration readConfigurationFile(const QString& filename);

/// The configuration that a text from elsewhere holds. Throws as for a file of that name.
Configuration parseConfiguration(const std::string& text, const std::string& filename);

/// Replaces the file as a whole or not at all. Throws Brindle::Critical with the fields "filename" and "reason".
void writeConfigurationFile(const QString& filename, const Configuration& configuration);

/// What a file dialog calls configuration files.
QString getConfigurationFilter();

} // namespace Velmora
