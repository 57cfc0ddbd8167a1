#pragma once

#include <cstddef>
#include <string>

namespace Brindle {

/// Reserves room for that many more characters, in large pages where the system has them: a long text is then filled
/// without a fault every 4 KiB.
void reserveMore(std::string& text, std::size_t size);

} // namespace Brindle
