#pragma once

#include <Brindle/core/Location.h>
#include <Brindle/files/StagedFile.h>

#include <filesystem>
#include <list>
#include <span>
#include <string>
#include <vector>

namespace Brindle {

/// Files that are written together: all of them, whole, or none. What is there under their names is replaced in one
/// step once everything is written, and comes back when one of them cannot be. Until then nobody sees anything of them,
/// and a failure or a signal that ends the program leaves nothing behind; only one that cannot be caught may leave a
/// hidden file, and only at the moment of replacement or on a file system without unnamed files.
///
/// A path that names a descriptor ("/dev/stdout", "/dev/fd/3", "-" for standard output), a device or a pipe is written
/// to instead, when the others are written. A symbolic link stays and leads to the new content. A file that replaces
/// another keeps its permissions, and its owner as far as the system allows.
class OutputFiles {
public:
    /// Errors are located at `caller`. They are Fatal "Unable to write file" with the fields "filename", the path as it
    /// was given, and "reason", and FileExists "File exists already" with the field "filename".
    explicit OutputFiles(const Location& caller) : _caller(caller) {}

    /// Throws what `add` would for the path alone: to be asked before the work is done.
    void requireWritable(const std::filesystem::path& path, Overwrite overwrite = Overwrite::Yes) const;
    /// Writes the content, or keeps it where the path is not that of a file.
    void add(const std::filesystem::path& path, std::string content, Overwrite overwrite = Overwrite::Yes);
    /// The same for a descriptor of this process; the name is what errors tell.
    void addTo(int descriptor, const std::filesystem::path& name, std::string content);
    /// Writes a file of which others may see nothing. It goes nowhere but to its name: no link is followed, and
    /// what is no regular file is refused.
    void addPrivate(const std::filesystem::path& path, std::span<const std::uint8_t> content, Overwrite overwrite);
    /// Gives all files their names. Nothing may be added afterwards.
    void commit();

private:
    struct Stream {
        std::filesystem::path name; ///< As it was given.
        FileDescriptor descriptor;
        std::string content;
    };

    void stage(const std::filesystem::path& path, const std::filesystem::path& target, FileAccess access,
               Overwrite overwrite, std::span<const std::uint8_t> content);
    template <typename Work>
    void reporting(const std::filesystem::path& path, Work work) const;

    const Location _caller;
    std::list<StagedFile> _files;
    std::vector<std::filesystem::path> _names; ///< Theirs, as they were given.
    std::list<Stream> _streams;
};

} // namespace Brindle
