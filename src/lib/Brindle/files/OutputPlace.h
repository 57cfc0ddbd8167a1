#pragma once

#include <filesystem>
#include <optional>

namespace Brindle {

/// Where what is written to a path ends.
struct OutputPlace {
    std::filesystem::path path; ///< Behind all symbolic links, also where nothing is there yet.
    std::optional<int>
        descriptor; ///< Of this process, which the path names ("/dev/stdout", "/dev/fd/3") or which "-" stands for.
    bool isDevice = false; ///< A device, a pipe or the like, which is written to and not replaced.

    /// Throws std::filesystem::filesystem_error when the links lead round in a circle.
    static OutputPlace find(const std::filesystem::path& path);
};

} // namespace Brindle
