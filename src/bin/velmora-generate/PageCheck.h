#pragma once

#include <string>

namespace GenerateTool {

/// Tells the console, as errors, what is wrong with the description page of an IP: it cannot be read, has no title, or
/// refers to a file that does not exist.
void checkPage(const std::string& filename);

} // namespace GenerateTool
