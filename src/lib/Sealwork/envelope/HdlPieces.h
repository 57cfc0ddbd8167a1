#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace Sealwork {

/// A run of whole lines of an HDL text.
struct HdlPiece {
    std::string_view text;
    bool isEnvelope = false; ///< One envelope, not yet read; otherwise what lies between two.
    std::size_t line = 1;    ///< Number of its first line.
};

/// The pieces of the text, which must outlive them, in order; together they are the whole text. Throws EnvelopeRefused
/// "truncated or malformed" for an envelope without its end and for parts of one without its begin.
std::vector<HdlPiece> splitAtEnvelopes(std::string_view text);

} // namespace Sealwork
