#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Brindle {

/// Owns a descriptor of the operating system and closes it.
class FileDescriptor {
public:
    /// Takes over what `open` returned; negative means none.
    explicit FileDescriptor(int descriptor) : _descriptor(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor() { close(); }

    bool isOpen() const { return _descriptor >= 0; }
    int get() const { return _descriptor; }

    /// Reads until the bytes are full or the file ends. Returns the number read, or -1 with `errno` set.
    std::ptrdiff_t read(std::span<std::uint8_t> bytes) const;
    /// Writes all. False with `errno` set.
    bool write(std::span<const std::uint8_t> bytes) const;
    /// False with `errno` set when the system could not store what was written.
    bool close();

private:
    int _descriptor;
};

} // namespace Brindle
