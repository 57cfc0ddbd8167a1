#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Sealwork {

/// What our own envelopes carry in their `encrypt_agent_info`: the information block and the authentication code.
struct EnvelopeSeal {
    std::string infoHex; ///< 32 lower-case hexadecimal digits.
    std::string macHex;  ///< 64 of them.

    /// None when the text is not exactly what `format` gives for some seal.
    static std::optional<EnvelopeSeal> parse(std::string_view agentInfo);

    std::string format() const;
};

} // namespace Sealwork
