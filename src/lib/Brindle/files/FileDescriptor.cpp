#include <Brindle/files/FileDescriptor.h>

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace Brindle {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    if (this == &other)
        return *this;
    close();
    _descriptor = std::exchange(other._descriptor, -1);
    return *this;
}

std::ptrdiff_t FileDescriptor::read(std::span<std::uint8_t> bytes) const {
    std::size_t total = 0;
    while (total < bytes.size()) {
        const ssize_t count = ::read(_descriptor, bytes.data() + total, bytes.size() - total);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return -1;
        if (count == 0)
            break;
        total += static_cast<std::size_t>(count);
    }
    return static_cast<std::ptrdiff_t>(total);
}

bool FileDescriptor::write(std::span<const std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool FileDescriptor::close() {
    const int descriptor = std::exchange(_descriptor, -1);
    return descriptor < 0 || ::close(descriptor) == 0;
}

} // namespace Brindle
