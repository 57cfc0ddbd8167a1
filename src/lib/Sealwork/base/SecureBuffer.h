#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Sealwork {

/// Bytes that are overwritten before their memory is given back: keys, session keys, passphrases.
class SecureBuffer {
public:
    SecureBuffer() = default;
    /// `size` bytes, all zero.
    explicit SecureBuffer(std::size_t size) : _bytes(size) {}
    explicit SecureBuffer(std::span<const std::uint8_t> bytes) : _bytes(bytes.begin(), bytes.end()) {}
    explicit SecureBuffer(std::string_view text) : _bytes(text.begin(), text.end()) {}
    SecureBuffer(SecureBuffer&&) noexcept = default;
    SecureBuffer& operator=(SecureBuffer&& other) noexcept;
    ~SecureBuffer();

    std::size_t size() const { return _bytes.size(); }
    std::uint8_t* data() { return _bytes.data(); }
    const std::uint8_t* data() const { return _bytes.data(); }
    operator std::span<std::uint8_t>() { return _bytes; }
    operator std::span<const std::uint8_t>() const { return _bytes; }
    /// The bytes as text; valid as long as the buffer.
    std::string_view text() const { return {reinterpret_cast<const char*>(_bytes.data()), _bytes.size()}; }

    /// Gives up the bytes from `size` on, overwriting them; never grows.
    void shrink(std::size_t size);

private:
    void cleanse() noexcept;

    std::vector<std::uint8_t> _bytes;
};

} // namespace Sealwork
