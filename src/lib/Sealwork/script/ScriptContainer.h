#pragma once

#include <Sealwork/keys/SignerKey.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sealwork {

/// The text form of a sealed script: a header of named fields, the enciphered script with its tag in base64 and,
/// when it is signed, the signature. There is exactly one text for each content.
struct ScriptContainer {
    static constexpr std::size_t tagSize = 16;             ///< Bytes of the authentication tag.
    static constexpr std::size_t largestScript = 64 << 20; ///< Bytes of plain text, 64 MiB.

    std::string keyId;                    ///< Short identity of the script key.
    std::array<std::uint8_t, 12> nonce{}; ///< Of AES-256-GCM.
    std::optional<std::string> signerId;  ///< Short identity of the signer's key.
    std::vector<std::uint8_t> payload;    ///< The enciphered script and the tag: at least `tagSize` bytes.
    std::optional<Signature> signature;   ///< Present when the signer is.

    /// Reads a text whose lines end with a line feed, or with carriage return and line feed. Throws ScriptRefused.
    static ScriptContainer parse(std::string_view text);

    /// True when the text begins as a sealed script does.
    static bool isSealed(std::string_view text);

    /// Bytes of plain text.
    std::size_t getScriptSize() const { return payload.size() - tagSize; }
    /// The header from its first character up to and including the empty line: what the tag also authenticates.
    std::string getHeader() const;
    /// What the signature is over: the header, the SHA-256 of the payload in lower-case hexadecimal and a line feed.
    std::string getSignedMessage() const;
    /// The whole text.
    std::string format() const;
};

} // namespace Sealwork
