#pragma once

#include <string>
#include <string_view>

namespace Velmora {

/// The UTF-8 text without leading and trailing white space and with every inner run of it collapsed to one blank. White
/// space is what Unicode calls so, non-breaking blanks included, exactly as `QString::simplified` takes it.
std::string simplified(std::string_view text);

} // namespace Velmora
