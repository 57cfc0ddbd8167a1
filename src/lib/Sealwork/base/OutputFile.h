#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace Sealwork {

enum class FileAccess { Private, Public }; ///< For its owner alone, or as the process's mask allows.
enum class Overwrite { No, Yes };

/// Throws Fatal "Unable to write file" with the fields "filename" and "reason" when a directory, a device or the like
/// has that name.
void requireReplaceable(const std::filesystem::path& filename);

/// Writes a file that is never seen half-written: the bytes go to a temporary file beside it, which then takes the
/// name. What replaces a file is for nobody who could not use that one. A symbolic link to a file stays and leads to
/// the new content, except for a private file, which goes nowhere but to its name. Throws Fatal "Unable to write file"
/// with the fields "filename" and "reason", Fatal "File exists already" with the field "filename".
void writeOutputFile(const std::filesystem::path& filename, std::span<const std::uint8_t> content, FileAccess access,
                     Overwrite overwrite);

} // namespace Sealwork
