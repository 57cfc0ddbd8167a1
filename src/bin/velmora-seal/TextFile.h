#pragma once

#include <filesystem>
#include <string>

namespace SealTool {

/// What `Brindle::readInputFile` reads, at most 2 GiB.
std::string readText(const std::string& filename);

/// Writes one file, or standard output for "-", as `Brindle::OutputFiles` does. A file that exists is replaced only if
/// that is wanted.
void writeText(const std::string& filename, std::string text, bool replace);

/// Throws Fatal "File exists already, --force replaces it" and what `Brindle::OutputFiles::requireWritable` throws,
/// unless the file may be written: to be asked before the work is done.
void requireWritable(const std::string& filename, bool replace);

/// Makes the directory and those above it, as far as they are missing; the empty path is there already. Throws Fatal
/// "Unable to make directory" with the fields "filename" and "reason".
void makeDirectory(const std::filesystem::path& directory);

} // namespace SealTool
