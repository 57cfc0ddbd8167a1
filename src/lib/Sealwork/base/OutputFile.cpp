#include <Sealwork/base/OutputFile.h>

#include <Brindle/core/Exception.h>
#include <Sealwork/base/FileDescriptor.h>
#include <Sealwork/base/Hex.h>
#include <Sealwork/base/Random.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Sealwork {

namespace {

[[noreturn]] void refuse(const std::filesystem::path& filename, std::string reason, const Brindle::Location& location) {
    throw Brindle::located(Brindle::Fatal("Unable to write file"), location,
                           {{"filename", filename.string()}, {"reason", std::move(reason)}});
}

std::filesystem::path getTemporaryName(const std::filesystem::path& filename) {
    std::array<std::uint8_t, 8> bytes{};
    fillRandom(bytes);
    // Hidden, so that no key directory takes it for a key.
    return filename.parent_path() / ("." + filename.filename().string() + "." + toHex(bytes));
}

/// Renames without replacing. False with `errno` set.
bool renameToNewName(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL)
        return false;
    // Not every file system knows how; what is left is to look first.
    if (std::filesystem::exists(to)) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

/// The permissions of a new file, which the process's mask reduces. What replaces a file is for nobody who could not
/// read that one.
mode_t getMode(const std::filesystem::path& filename, FileAccess access) {
    if (access == FileAccess::Private)
        return S_IRUSR | S_IWUSR;
    struct stat present {};
    if (stat(filename.c_str(), &present) == 0)
        return (present.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) | S_IRUSR | S_IWUSR;
    return S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
}

/// The file that a symbolic link leads to, which is written in the link's place.
std::filesystem::path getTarget(const std::filesystem::path& filename) {
    std::error_code error;
    if (!std::filesystem::is_symlink(filename, error))
        return filename;
    const auto target = std::filesystem::canonical(filename, error);
    return error ? filename : target;
}

/// The file beside the one to be written; removed unless it takes the name.
class TemporaryFile {
public:
    /// The file name is what errors tell, the target what is written.
    TemporaryFile(const std::filesystem::path& filename, std::filesystem::path target, FileAccess access)
        : _filename(filename),
          _target(std::move(target)),
          _temporary(getTemporaryName(_target)),
          _file(open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, getMode(_target, access))) {
        if (!_file.isOpen())
            refuse(filename, std::strerror(errno), BRINDLE_HERE);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!_isNamed)
            unlink(_temporary.c_str());
    }

    void write(std::span<const std::uint8_t> content) {
        if (!_file.write(content) || fsync(_file.get()) != 0 || !_file.close())
            refuse(_filename, std::strerror(errno), BRINDLE_HERE);
    }

    void takeName(Overwrite overwrite) {
        const bool hasFailed = overwrite == Overwrite::Yes ? std::rename(_temporary.c_str(), _target.c_str()) != 0
                                                           : !renameToNewName(_temporary, _target);
        if (hasFailed && errno == EEXIST)
            throw Brindle::located(Brindle::Fatal("File exists already"), BRINDLE_HERE,
                                   {{"filename", _filename.string()}});
        if (hasFailed)
            refuse(_filename, std::strerror(errno), BRINDLE_HERE);
        _isNamed = true;
    }

private:
    const std::filesystem::path& _filename;
    const std::filesystem::path _target;
    const std::filesystem::path _temporary;
    FileDescriptor _file;
    bool _isNamed = false;
};

} // namespace

void requireReplaceable(const std::filesystem::path& filename) {
    std::error_code error;
    const auto status = std::filesystem::status(filename, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        refuse(filename, "not a regular file", BRINDLE_HERE);
}

void writeOutputFile(const std::filesystem::path& filename, std::span<const std::uint8_t> content, FileAccess access,
                     Overwrite overwrite) {
    requireReplaceable(filename);
    TemporaryFile file(filename, access == FileAccess::Private ? filename : getTarget(filename), access);
    file.write(content);
    file.takeName(overwrite);
}

} // namespace Sealwork
