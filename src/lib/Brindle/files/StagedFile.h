#pragma once

#include <Brindle/files/FileDescriptor.h>
#include <Brindle/files/SignalCleanup.h>

#include <cstdint>
#include <filesystem>
#include <span>

namespace Brindle {

enum class Overwrite { No, Yes };
enum class FileAccess {
    Private,
    Public
}; ///< For its owner alone, or as the file that it replaces or the process's mask.

/// A file that is written beside its place: without a name where the file system can, otherwise under a hidden one. It
/// goes with the object, or by a signal that ends the program. Failures are std::system_error.
class StagedFile {
public:
    /// Opens it beside `target`, which is no symbolic link that is to be followed. An unnamed file stays open to the
    /// end, of which a process can have so many only.
    StagedFile(std::filesystem::path target, FileAccess access, Overwrite overwrite, bool mayBeUnnamed);
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile();

    /// Writes all. What is private, as keys are, is on the disk then.
    void write(std::span<const std::uint8_t> content);

    /// Takes the target's name. Signals must wait from here on to the end of the object. `keepsOld` is for a file that
    /// may be put back. What is there is not replaced with Overwrite::No: the failure is std::errc::file_exists.
    void publish(bool keepsOld);
    /// Undoes that.
    void putBack() noexcept;

private:
    enum class State { Staged, New, Replaced, Exchanged, BackedUp };

    void open(FileAccess access, bool mayBeUnnamed);
    void takeAccess() const;
    void giveName(const std::filesystem::path& name) const;
    void takeNewName();
    void replaceKeeping();

    const std::filesystem::path _target;
    const Overwrite _overwrite;
    const std::filesystem::path _hidden; ///< Its own name, or that of what it replaced.
    const std::filesystem::path _backup;
    const bool _mustLast;
    const SignalCleanup _cleanup;
    FileDescriptor _file;
    bool _isNamed = false; ///< Has the hidden name.
    State _state = State::Staged;
};

} // namespace Brindle
