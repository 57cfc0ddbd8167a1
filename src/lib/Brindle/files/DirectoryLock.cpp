#include <Brindle/files/DirectoryLock.h>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

namespace Brindle {

DirectoryLock::DirectoryLock(const std::filesystem::path& directory)
    : _directory(open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (_directory.isOpen())
        while (flock(_directory.get(), LOCK_EX) != 0 && errno == EINTR) {
        }
}

} // namespace Brindle
