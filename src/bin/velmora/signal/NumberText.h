#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Velmora {

/// The finite decimal number, such as `-1.5e-3`, that is the whole text, in the notation of programs whatever the
/// locale; none when it is no such number.
std::optional<double> parseReal(std::string_view text);

/// Whether the text is meant for a number, even for one that `parseReal` refuses: it begins with a digit (signs and
/// points before it set aside), or spells an infinity or what is not a number.
bool looksLikeNumber(std::string_view text);

/// The integer that is the whole text and fits an `int`; none for anything else.
std::optional<int> parseInteger(std::string_view text);

/// The shortest decimal text that reads as this number again.
std::string getRealText(double value);

/// The number with that many digits behind the point.
std::string getFixedText(double value, int digits);

} // namespace Velmora
