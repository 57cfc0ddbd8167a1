#pragma once

#include <filesystem>

namespace SealTool {

/// Shows a warning when others than its owner can read the file.
void warnOfReaders(const std::filesystem::path& privateFile);

} // namespace SealTool
