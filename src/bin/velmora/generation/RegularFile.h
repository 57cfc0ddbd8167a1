#pragma once

#include <optional>
#include <string>

namespace Velmora {

/// The first `limit` bytes of a text file, with Windows line ends turned into line feeds; nothing when it cannot be
/// read or is not a regular file (the opening of a named pipe would wait for ever).
std::optional<std::string> readRegularFile(const std::string& filename, std::size_t limit);

} // namespace Velmora
