#pragma once

#include <Sealwork/base/SecureBuffer.h>

#include <Brindle/core/Location.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Sealwork {

/// The files of the directory with that extension (".pem"), in ascending byte order of file name; hidden files are left
/// out. Throws Fatal "Unable to open key directory" with the fields "filename" and "reason".
std::vector<std::filesystem::path> listKeyFiles(const std::filesystem::path& directory, std::string_view extension);

/// The content of a regular file of at most 64 KiB. Throws Fatal "Unable to read key file" with the fields "filename"
/// and "reason".
SecureBuffer readKeyFile(const std::filesystem::path& filename);

/// Throws the error of `readKeyFile` for a file whose content does not fit. The location is the caller's.
[[noreturn]] void refuseKeyFile(const std::filesystem::path& filename, std::string reason,
                                const Brindle::Location& location);

} // namespace Sealwork
