#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Velmora {

/// The content of a file that numbers are read from. It must outlive this.
struct NumberSource {
    std::string_view content;
    std::string filename; ///< As it is told.

    /// Throw Brindle::Critical with the message and the fields "filename" and "line" (from 1), of the text where the
    /// offset lies.
    [[noreturn]] void refuseLine(const std::string& message, std::size_t line) const;
    [[noreturn]] void refuseAt(const std::string& message, std::size_t offset) const;
    /// The same for what is no number.
    [[noreturn]] void refuseNumber(std::string_view text, std::size_t line) const;
    /// Throws Brindle::Critical with the message and the fields "filename" and "element", from 1, of a list without
    /// lines.
    [[noreturn]] void refuseElement(const std::string& message, std::size_t element) const;
};

} // namespace Velmora
