#pragma once

#include <Sealwork/envelope/EnvelopeSeal.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Sealwork {

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

    /// The authentication code and what goes with it; foreign envelopes have none, strictly read ones always do.
    std::optional<EnvelopeSeal> getSeal() const { return EnvelopeSeal::parse(agentInfo); }
};

} // namespace Sealwork
