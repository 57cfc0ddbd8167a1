#pragma once

#include <cstddef>
#include <string>

namespace Brindle {

/// The text of a regular file, or why there is none.
struct RegularFile {
    std::string text;   ///< Without carriage returns: Windows line ends are line feeds.
    std::string reason; ///< Why it could not be read, as the field "reason" of an error tells it; empty when it was.

    bool isRead() const { return reason.empty(); }

    /// Reads at most `limit` bytes. What is no regular file is not read, and a named pipe is not waited for.
    static RegularFile read(const std::string& filename, std::size_t limit);
};

} // namespace Brindle
