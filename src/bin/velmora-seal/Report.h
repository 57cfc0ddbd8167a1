#pragma once

#include <Brindle/Exception.h>

#include <string>
#include <string_view>

namespace SealTool {

/// The text that tells of an exception: "FILE:LINE: message (other fields)", the file and the line as far as
/// its fields name them.
std::string getReport(const Brindle::Exception& exception);

/// Shows a line on standard error, the tool's name in front.
void showProblem(std::string_view text);

} // namespace SealTool
