#pragma once

#include <Brindle/files/FileDescriptor.h>

#include <filesystem>

namespace Brindle {

/// Keeps other processes that lock the directory out of it while it lives, so that files which belong together are
/// looked at and written together. Where the file system knows no locks nothing is locked.
class DirectoryLock {
public:
    /// Waits for it. The empty path is the current directory.
    explicit DirectoryLock(const std::filesystem::path& directory);

private:
    FileDescriptor _directory; ///< Closing it ends the lock.
};

} // namespace Brindle
