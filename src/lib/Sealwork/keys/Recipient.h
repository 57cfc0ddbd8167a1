#pragma once

#include <Sealwork/keys/AsymmetricKey.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Sealwork {

/// One who can open protected envelopes: an RSA public key with the owner and the name under which its tool knows it.
class Recipient {
public:
    static constexpr unsigned fewestBits = 2048;
    static constexpr unsigned mostBits = 8192;
    static constexpr std::string_view ownerField = "Key-Owner: "; ///< Begin of a recipient file's first line.
    static constexpr std::string_view nameField = "Key-Name: ";   ///< Begin of its second line.

    /// Reads a recipient file: the lines "Key-Owner: ..." and "Key-Name: ...", then one PEM public key. Throws Fatal
    /// "Recipient key refused: ..." with the fields "filename" and, for a wrong length, "bits".
    static Recipient parse(std::string_view text, const std::filesystem::path& filename);
    /// The text that `parse` reads.
    static std::string format(std::string_view owner, std::string_view name, const AsymmetricKey& key);

    /// True for 1 to 128 printable ASCII characters without double quote, backslash and backtick, no blank at either
    /// end: what an owner and a key name may be.
    static bool isName(std::string_view text);

    const std::string& getOwner() const { return _owner; }
    const std::string& getName() const { return _name; }
    /// Of the modulus.
    unsigned getBits() const { return _key.getBits(); }
    /// Size in bytes of what `wrap` returns.
    std::size_t getWrappedSize() const;

    /// The session key enciphered for this recipient: RSAES-PKCS1-v1_5 of RFC 8017 section 7.2.
    std::vector<std::uint8_t> wrap(std::span<const std::uint8_t> sessionKey) const;

private:
    Recipient(std::string_view owner, std::string_view name, AsymmetricKey key)
        : _owner(owner), _name(name), _key(std::move(key)) {}

    std::string _owner;
    std::string _name;
    AsymmetricKey _key;
};

} // namespace Sealwork
