#pragma once

#include <Sealwork/envelope/EnvelopeSeal.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Sealwork {

/// Adds the lines of one envelope, in the exact form in which they are written, to a text.
class EnvelopeText {
public:
    static constexpr std::string_view agent = "Velmora"; ///< Who writes them.
    static constexpr std::string_view version = "1";     ///< Of the envelope: IEEE 1735 version 1.

    /// The text is kept, not owned.
    EnvelopeText(std::string& text, std::string_view language);

    /// The lines down to the first key block.
    void addHead(const EnvelopeSeal& seal);
    /// The lines of a key block of `size` bytes down to its base64 text, which the caller then adds.
    void openKeyBlock(std::string_view owner, std::string_view name, std::size_t size);
    /// The same for the data block.
    void openDataBlock(std::string_view method, std::size_t size);
    /// What follows the base64 text of a block.
    void closeBlock() { _text += '\n'; }
    void addEnd() { addDirective("end_protected"); }
    /// Replaces the authentication code, which is known last.
    void setMac(std::string_view macHex);

private:
    void addDirective(std::string_view directive);
    void addEncoding(std::size_t size);

    std::string& _text;
    std::string_view _prefix;
    std::size_t _macPosition = 0;
};

} // namespace Sealwork
