#pragma once

#include <Sealwork/envelope/EnvelopeSeal.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sealwork {

/// How much an envelope may differ from the ones that this library writes.
enum class EnvelopeReading {
    Strict, ///< Nothing: there is exactly one text for each content.
    Lax,    ///< Free spacing, case and line ends, other agents, directives that are not known, layout of version 2.
};

/// The session key, enciphered for one recipient.
struct EnvelopeKeyBlock {
    std::string owner;
    std::string name;
    std::string method; ///< In lower case: "rsa".
    std::vector<std::uint8_t> wrapped;
};

/// What a digital envelope of IEEE 1735 holds, still enciphered.
struct Envelope {
    std::string language; ///< "vhdl" or "vlog".
    std::string version;
    std::string agent;
    std::string agentInfo;
    std::vector<EnvelopeKeyBlock> keyBlocks; ///< At least one.
    std::string dataMethod;                  ///< In lower case.
    std::vector<std::uint8_t> data;          ///< Initial value and ciphertext.

    /// Reads one envelope from the first character of its first line to the end of its last one; the text's first line
    /// is the file's line `firstLine`. Throws EnvelopeRefused "truncated or malformed" with the fields "line" and
    /// "reason". Rights of version 2 are passed over.
    static Envelope parse(std::string_view text, EnvelopeReading reading, std::size_t firstLine = 1);

    /// The authentication code and what goes with it; foreign envelopes have none, strictly read ones always do.
    std::optional<EnvelopeSeal> getSeal() const { return EnvelopeSeal::parse(agentInfo); }
};

} // namespace Sealwork
