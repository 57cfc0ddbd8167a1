#pragma once

#include <velmora/generation/Generation.h>
#include <velmora/rules/HdlUnit.h>

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace GenerateTool {

/// A file that a generation makes, as it is written: protected regions are enciphered.
struct GeneratedFile {
    QString name; ///< Below the directory of a design of several files.
    std::string content;
};

/// Runs the script of the generation and writes nothing; a single file has the name of the entity. Throws what the
/// script's run throws, and Brindle::Fatal for a file that would leave the directory.
std::vector<GeneratedFile> generateFiles(const Velmora::Generation& generation);

/// The unit of that name in the files, or else the last one of the first file that has any. What is enciphered does
/// not count.
std::optional<Velmora::HdlUnit> findUnit(const std::vector<GeneratedFile>& files, const QString& entityName);

} // namespace GenerateTool
