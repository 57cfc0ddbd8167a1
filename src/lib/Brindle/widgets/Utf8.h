#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Brindle {

/// The number, from 1, of the first line of the text that is not UTF-8; none when every line is.
std::optional<std::size_t> findLineOutsideUtf8(std::string_view text);

} // namespace Brindle
