#pragma once

#include <Sealwork/keys/AsymmetricKey.h>

#include <optional>
#include <string>
#include <string_view>

namespace Sealwork {

/// A recipient's public key as the makers of tools hand it out: a PEM public key with any text in front, or HDL
/// directives with a `key_public_key` block (IEEE 1735), in either language.
struct PublishedKey {
    AsymmetricKey key;
    std::string owner; ///< What the text names as such, possibly nothing.
    std::string name;

    /// None when the text holds no public key, or more than one.
    static std::optional<PublishedKey> parse(std::string_view text);
};

} // namespace Sealwork
