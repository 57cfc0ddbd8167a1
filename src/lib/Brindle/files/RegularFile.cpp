#include <Brindle/files/RegularFile.h>

#include <Brindle/files/FileDescriptor.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <span>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace Brindle {

namespace {

std::string getOpeningReason() {
    if (errno == ENOENT || errno == ENOTDIR)
        return "There is no such file";
    return errno == ENXIO ? "It is no regular file" : "It may not be read"; // a socket cannot be opened
}

/// Appends what follows in the file, `size` bytes at most. Negative with `errno` set when it cannot be read.
std::ptrdiff_t append(std::string& text, const FileDescriptor& file, std::size_t size) {
    const auto earlier = text.size();
    text.resize(earlier + size);
    const auto count = file.read({reinterpret_cast<std::uint8_t*>(text.data()) + earlier, size});
    text.resize(earlier + static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0)));
    return count;
}

} // namespace

RegularFile RegularFile::read(const std::string& filename, std::size_t limit) {
    constexpr std::size_t usualPiece = 4096; // bytes
    const FileDescriptor file(open(filename.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen())
        return {{}, getOpeningReason()};
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {{}, "It is no regular file"};
    const auto told = static_cast<std::size_t>(status.st_size); // 0 of files that the system makes when they are read
    std::string text;
    for (bool isMore = true; isMore && text.size() < limit;) {
        const auto size = std::min(told > 0 ? told : usualPiece, limit - text.size());
        const auto count = append(text, file, size);
        if (count < 0)
            return {{}, std::generic_category().message(errno)};
        isMore = told == 0 && static_cast<std::size_t>(count) == size;
    }
    std::erase(text, '\r');
    return {std::move(text), {}};
}

} // namespace Brindle
