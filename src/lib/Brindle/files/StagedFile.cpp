#include <Brindle/files/StagedFile.h>

#include <Brindle/core/Random.h>
#include <Brindle/files/SystemError.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Brindle {

namespace fs = std::filesystem;

namespace {

constexpr mode_t permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;

/// A name in the same directory that nothing has. Hidden, so that no list of files takes it for one of its kind, and
/// short, as the name beside it may be as long as names can be.
fs::path makeHiddenName(const fs::path& target) {
    std::array<char, 16> digits{};
    char* const end = std::to_chars(digits.begin(), digits.end(), getRandomValue(), 16).ptr;
    return target.parent_path() / (".part-" + std::string(digits.data(), end));
}

/// The directory as `open` takes it.
fs::path getDirectory(const fs::path& target) {
    return target.has_parent_path() ? target.parent_path() : ".";
}

bool isLacking(int error) {
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

} // namespace

StagedFile::StagedFile(fs::path target, FileAccess access, Overwrite overwrite, bool mayBeUnnamed)
    : _target(std::move(target)),
      _overwrite(overwrite),
      _hidden(makeHiddenName(_target)),
      _backup(makeHiddenName(_target)),
      _mustLast(access == FileAccess::Private),
      _cleanup([](void* name) { unlink(static_cast<const char*>(name)); }, const_cast<char*>(_hidden.c_str())),
      _file(-1) {
    open(access, mayBeUnnamed);
}

StagedFile::~StagedFile() {
    if (_isNamed)
        unlink(_hidden.c_str());
    if (_state == State::BackedUp)
        unlink(_backup.c_str());
}

void StagedFile::open(FileAccess fileAccess, bool mayBeUnnamed) {
    const mode_t mode = fileAccess == FileAccess::Private ? S_IRUSR | S_IWUSR
                                                          : S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    // Only through the list of descriptors can a file without a name get one.
    if (mayBeUnnamed && access("/proc/self/fd", X_OK) == 0)
        _file = FileDescriptor(::open(getDirectory(_target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    if (!_file.isOpen()) {
        _isNamed = true;
        _file = FileDescriptor(::open(_hidden.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    }
    requireSuccess(_file.isOpen());
    if (fileAccess == FileAccess::Public)
        takeAccess();
}

/// Owner and permissions of the file that is to be replaced.
void StagedFile::takeAccess() const {
    struct stat present {};
    if (stat(_target.c_str(), &present) != 0)
        return;
    struct stat own {};
    requireSuccess(fstat(_file.get(), &own) == 0);
    mode_t mode = present.st_mode & permissionBits;
    const bool hasGroup = fchown(_file.get(), present.st_uid, present.st_gid) == 0 ||
                          fchown(_file.get(), static_cast<uid_t>(-1), present.st_gid) == 0 ||
                          own.st_gid == present.st_gid;
    if (!hasGroup)
        mode &= ~static_cast<mode_t>(S_IRWXG); // It was not for this group.
    if (mode != (own.st_mode & permissionBits))
        requireSuccess(fchmod(_file.get(), mode) == 0);
}

void StagedFile::write(std::span<const std::uint8_t> content) {
    // What can be made again need not wait for the disk; errors of file systems that tell them late come with the
    // close.
    requireSuccess(_file.write(content) && (!_mustLast || fsync(_file.get()) == 0) && (!_isNamed || _file.close()));
}

void StagedFile::publish(bool keepsOld) {
    if (_overwrite == Overwrite::No) {
        takeNewName();
        return;
    }
    if (!_isNamed) {
        giveName(_hidden);
        _isNamed = true;
    }
    if (keepsOld && fs::exists(fs::symlink_status(_target))) {
        replaceKeeping();
        return;
    }
    requireSuccess(std::rename(_hidden.c_str(), _target.c_str()) == 0);
    _isNamed = false;
    _state = keepsOld ? State::New : State::Replaced;
}

void StagedFile::giveName(const fs::path& name) const {
    const std::string entry = "/proc/self/fd/" + std::to_string(_file.get());
    requireSuccess(linkat(AT_FDCWD, entry.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0);
}

void StagedFile::takeNewName() {
    if (!_isNamed) {
        giveName(_target);
    } else if (renameat2(AT_FDCWD, _hidden.c_str(), AT_FDCWD, _target.c_str(), RENAME_NOREPLACE) == 0) {
        _isNamed = false;
    } else {
        // A second name is what file systems have that do not know how to rename so.
        requireSuccess(isLacking(errno) && link(_hidden.c_str(), _target.c_str()) == 0);
    }
    _state = State::New;
}

void StagedFile::replaceKeeping() {
    if (renameat2(AT_FDCWD, _hidden.c_str(), AT_FDCWD, _target.c_str(), RENAME_EXCHANGE) == 0) {
        _state = State::Exchanged;
        return;
    }
    requireSuccess(isLacking(errno) && link(_target.c_str(), _backup.c_str()) == 0);
    _state = State::BackedUp;
    requireSuccess(std::rename(_hidden.c_str(), _target.c_str()) == 0);
    _isNamed = false;
}

void StagedFile::putBack() noexcept {
    if (_state == State::New)
        unlink(_target.c_str());
    else if (_state == State::Exchanged)
        renameat2(AT_FDCWD, _hidden.c_str(), AT_FDCWD, _target.c_str(), RENAME_EXCHANGE);
    else if (_state == State::BackedUp)
        std::rename(_backup.c_str(), _target.c_str());
    unlink(_backup.c_str()); // It stays when both are names of one file.
    _state = State::Staged;
}

} // namespace Brindle
