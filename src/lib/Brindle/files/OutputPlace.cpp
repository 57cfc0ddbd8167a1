#include <Brindle/files/OutputPlace.h>

#include <charconv>
#include <string>

#include <unistd.h>

namespace Brindle {

namespace fs = std::filesystem;

namespace {

/// The descriptor whose entry the path is in the list that the system keeps of this process's.
std::optional<int> getDescriptor(const fs::path& path) {
    if (path == "-")
        return STDOUT_FILENO;
    const std::string name = path.filename().string();
    int descriptor = -1;
    const auto [end, fault] = std::from_chars(name.data(), name.data() + name.size(), descriptor);
    if (fault != std::errc() || end != name.data() + name.size() || descriptor < 0)
        return std::nullopt;
    std::error_code error;
    const auto own = fs::canonical("/proc/self/fd", error);
    if (error || fs::canonical(path.parent_path(), error) != own || error)
        return std::nullopt;
    return descriptor;
}

} // namespace

OutputPlace OutputPlace::find(const fs::path& path) {
    constexpr int mostLinks = 40; // As many as Linux follows.
    OutputPlace place{path, std::nullopt};
    std::error_code error;
    for (int count = 0;; ++count) {
        place.descriptor = getDescriptor(place.path);
        if (place.descriptor || !fs::is_symlink(fs::symlink_status(place.path, error)))
            break;
        if (count == mostLinks)
            throw fs::filesystem_error("", std::make_error_code(std::errc::too_many_symbolic_link_levels));
        place.path = place.path.parent_path() / fs::read_symlink(place.path);
    }
    const auto status = fs::status(place.path, error);
    place.isDevice =
        !place.descriptor && fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
    return place;
}

} // namespace Brindle
