#pragma once

#include <velmora/rules/Configuration.h>

#include <QString>

#include <cstddef>
#include <string>

namespace Velmora {

inline constexpr std::size_t largestConfiguration = 1024UL * 1024; ///< As a file, in bytes.

/// Reads a configuration from a regular file. Throws Brindle::Critical with the fields "filename" and "reason" when it
/// cannot be read, and what `parseConfiguration` throws.
Configuration readConfigurationFile(const QString& filename);

/// The configuration that is the text of a file of that name. Throws Brindle::Critical with the field "filename" when
/// it is larger than the largest, with "filename" and "line" when it is not UTF-8, and what `Configuration::parse`
/// throws.
Configuration parseConfiguration(const std::string& text, const std::string& filename);

/// Replaces the file as a whole or not at all. Throws Brindle::Critical with the fields "filename" and "reason".
void writeConfigurationFile(const QString& filename, const Configuration& configuration);

/// What a file dialog calls configuration files.
QString getConfigurationFilter();

} // namespace Velmora
