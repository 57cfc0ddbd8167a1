#pragma once

#include <Brindle/core/Exception.h>

#include <string>
#include <string_view>

namespace SealTool {

/// The text that tells of an exception: "FILE:LINE: message (other fields)", the file or directory and the line as far
/// as its fields name them.
std::string getReport(const Brindle::Exception& exception);

/// Calls and returns; what it throws names the file, unless it names one already.
template <typename Call>
auto aboutFile(const std::string& filename, Call call) {
    try {
        return call();
    } catch (Brindle::Exception& exception) {
        if (exception.getField("filename").empty())
            exception.addField("filename", filename);
        throw;
    }
}

/// Shows a line on standard error, the tool's name in front.
void showProblem(std::string_view text);

} // namespace SealTool
