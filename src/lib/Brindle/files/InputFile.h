#pragma once

#include <cstddef>
#include <string>

namespace Brindle {

/// The name that stands for standard input where a file is read, and for standard output where one is written.
inline constexpr const char* standardStream = "-";

/// The whole content of a file of whatever kind, or of standard input for "-". Throws Fatal "Unable to read file" with
/// the fields "filename" and "reason", for more than `limit` bytes too.
std::string readInputFile(const std::string& filename, std::size_t limit);

} // namespace Brindle
