#pragma once

#include <Sealwork/base/Base64.h>

#include <array>
#include <string>

namespace Sealwork {

/// Encodes bytes that come piece by piece in base64 lines (see Base64.h), straight at the end of a text.
class Base64LineEncoder {
public:
    /// The text is kept, not owned; who knows the final size reserves it beforehand.
    explicit Base64LineEncoder(std::string& out) : _out(out) {}

    void append(std::span<const std::uint8_t> bytes);
    /// Writes what does not fill a line. Nothing may be appended afterwards.
    void finish();

private:
    void encodeLines(std::span<const std::uint8_t> bytes);

    std::string& _out;
    std::array<std::uint8_t, base64LineBytes> _rest{}; ///< Bytes that wait for their line to fill.
    std::size_t _restSize = 0;
};

/// Appends the lines of all the bytes.
void appendBase64Lines(std::string& out, std::span<const std::uint8_t> bytes);

} // namespace Sealwork
