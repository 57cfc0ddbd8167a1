#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Sealwork {

/// A part of an HDL file that is to be hidden in an envelope. Keeps views: what it was made of must outlive it.
class ProtectedRegion {
public:
    static constexpr std::size_t infoSize = 16;            ///< Bytes of the information block.
    static constexpr std::size_t largestRegion = 1U << 30; ///< Bytes, 1 GiB.

    /// The language is "vhdl" or "vlog", the information block goes along in the clear, the text is any bytes. Throws
    /// InvalidRequest "Unknown language" (field "language"), "Information block should be 16 bytes" and "Region too
    /// large" (field "size"), Fatal "Region already holds a protected envelope" (field "line", from 1).
    ProtectedRegion(std::string_view language, std::string_view info, std::string_view text);

    std::string_view getLanguage() const { return _language; }
    std::string_view getText() const { return _text; }
    /// The information block in lower-case hexadecimal.
    std::string getInfoHex() const;

private:
    std::string_view _language;
    std::string_view _info;
    std::string_view _text;
};

} // namespace Sealwork
