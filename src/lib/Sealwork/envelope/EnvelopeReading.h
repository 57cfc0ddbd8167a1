#pragma once

#include <Sealwork/envelope/Envelope.h>

#include <cstddef>
#include <string_view>

namespace Sealwork {

/// How much an envelope may differ from the ones that this library writes.
enum class EnvelopeReading {
    Strict, ///< Nothing: there is exactly one text for each content.
    Lax,    ///< Free spacing, case and line ends, other agents, directives that are not known, layout of version 2.
};

/// Reads one envelope from the first character of its first line to the end of its last one; the text's first line is
/// the file's line `firstLine`. Throws EnvelopeRefused "truncated or malformed" with the fields "line" and "reason".
/// Rights of version 2 are passed over. A strictly read envelope has an authentication code.
Envelope readEnvelope(std::string_view text, EnvelopeReading reading, std::size_t firstLine = 1);

} // namespace Sealwork
