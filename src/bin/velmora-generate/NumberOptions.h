#pragma once

#include <Brindle/tool/CommandLine.h>

#include <optional>
#include <string_view>
#include <vector>

namespace GenerateTool {

/// The value of an option that is a real number, an integer, or real numbers with commas between them; none when the
/// option was not given. Throw UsageError for another value, and for an integer outside the range.
std::optional<double> findReal(const Brindle::CommandLine& commandLine, std::string_view option);
std::optional<int> findInteger(const Brindle::CommandLine& commandLine, std::string_view option, int smallest,
                               int largest);
std::vector<double> findReals(const Brindle::CommandLine& commandLine, std::string_view option);

/// The width of coefficients in bits. Throws UsageError when it is missing too.
unsigned getWidth(const Brindle::CommandLine& commandLine);

} // namespace GenerateTool
