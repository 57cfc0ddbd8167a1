#pragma once

#include <filesystem>

namespace Sealwork {

/// Where the keys of an installation lie.
class KeyDirectory {
public:
    /// The directory that the environment variable VELMORA_SEAL_DIR names, otherwise "etc/velmora/seal" below
    /// ORVANE_PREFIX. Throws Fatal "Unable to open key directory" with the fields "filename" and "reason" when neither
    /// variable is set.
    static KeyDirectory locate();

    explicit KeyDirectory(std::filesystem::path base) : _base(std::move(base)) {}

    /// Public keys of those who can open envelopes: `*.pem`.
    std::filesystem::path getRecipients() const { return _base / "recipients"; }
    /// Public keys of those whose scripts are trusted: every file.
    std::filesystem::path getSigners() const { return _base / "signers"; }
    /// Keys of sealed scripts: `*.key`.
    std::filesystem::path getScripts() const { return _base / "scripts"; }
    std::filesystem::path getConfiguration() const { return _base / "seal.conf"; }

private:
    std::filesystem::path _base;
};

} // namespace Sealwork
