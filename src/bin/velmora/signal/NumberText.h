#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Velmora {

/// The finite decimal number, such as `-1.5e-3`, that is the whole text, in the notation of programs whatever the
/// locale; none when it is no such number.
std::optional<double> parseReal(std::string_view text);

/// The same for an integer that fits; none for anything else.
std::optional<int> parseInteger(std::string_view text);

/// The shortest decimal text that reads as this number again.
std::string getRealText(double value);

/// The number with that many digits behind the point.
std::string getFixedText(double value, int digits);

} // namespace Velmora
