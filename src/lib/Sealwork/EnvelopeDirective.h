#pragma once

#include <string_view>

namespace Sealwork {

/// True for a line that announces a block of an envelope, in either language: white space, "`protect" or "`pragma
/// protect" and, as the line's last word, "key_block" or "data_block".
bool isBlockDirective(std::string_view line);

} // namespace Sealwork
