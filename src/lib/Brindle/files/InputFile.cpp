#include <Brindle/files/InputFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/LargeText.h>
#include <Brindle/files/FileDescriptor.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Brindle {

namespace {

[[noreturn]] void refuse(const std::string& filename, std::string reason, const Location& location) {
    throw located(Fatal("Unable to read file"), location, {{"filename", filename}, {"reason", std::move(reason)}});
}

/// A descriptor of its own even for standard input, so that it can be closed.
int openForReading(const std::string& filename) {
    return filename == standardStream ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                      : open(filename.c_str(), O_RDONLY | O_CLOEXEC);
}

/// Bytes that the file holds, and one for a line feed; not known of a pipe.
std::size_t getSizeHint(const FileDescriptor& file) {
    struct stat status {};
    return fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1
                                                                      : 0;
}

} // namespace

std::string readInputFile(const std::string& filename, std::size_t limit) {
    const FileDescriptor file(openForReading(filename));
    if (!file.isOpen())
        refuse(filename, std::strerror(errno), BRINDLE_HERE);
    std::string text;
    reserveMore(text, std::min(getSizeHint(file), limit));
    std::array<std::uint8_t, 65536> piece{};
    for (;;) {
        const auto size = file.read(piece);
        if (size < 0)
            refuse(filename, std::strerror(errno), BRINDLE_HERE);
        if (size == 0)
            return text;
        if (text.size() + static_cast<std::size_t>(size) > limit)
            refuse(filename, "larger than " + getLabel(limit) + " bytes", BRINDLE_HERE);
        text.append(reinterpret_cast<const char*>(piece.data()), static_cast<std::size_t>(size));
    }
}

} // namespace Brindle
