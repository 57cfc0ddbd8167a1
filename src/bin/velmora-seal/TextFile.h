#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace SealTool {

/// The name that stands for standard input or output.
inline constexpr std::string_view standardStream = "-";

/// The whole content of the file, or of standard input for "-". Throws Fatal "Unable to read file" with the fields
/// "filename" and "reason".
std::string readText(const std::string& filename);

/// Writes the file, or standard output for "-". A file that exists is replaced only if that is wanted. Throws what
/// `Sealwork::writeOutputFile` throws.
void writeText(const std::string& filename, std::string_view text, bool replace);

/// Throws Fatal "File exists already, --force replaces it", and what `Sealwork::requireReplaceable` throws, unless the
/// file may be written: to be asked before the work is done.
void requireWritable(const std::string& filename, bool replace);

/// Makes the directory and those above it, as far as they are missing; the empty path is there already. Throws Fatal
/// "Unable to make directory" with the fields "filename" and "reason".
void makeDirectory(const std::filesystem::path& directory);

} // namespace SealTool
