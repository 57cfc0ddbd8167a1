#pragma once

#include <velmora/signal/NumberSource.h>

#include <string_view>
#include <vector>

namespace Velmora {

/// What stands in front of a comment, which begins with "#", "%", ";" or "//".
std::string_view withoutComment(std::string_view line);

/// The numbers of a text, one or several a line with commas or blanks between them. The first line that is no comment
/// may be a header. Throws what `NumberSource` throws; a text may hold no number.
std::vector<double> readTextNumbers(const NumberSource& source);

} // namespace Velmora
