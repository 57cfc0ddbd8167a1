#pragma once

#include <Sealwork/keys/AsymmetricKey.h>

#include <optional>
#include <string>

namespace SealTool {

/// Where the passphrase of a private key comes from: the first line of the file, otherwise the terminal, whose prompt
/// names the owner ("the signer"). The source throws Fatal "Unable to read key file" for the file and "Unable to ask
/// for the passphrase, give --passphrase-file" without a terminal.
Sealwork::PassphraseSource getPassphraseSource(const std::optional<std::string>& filename, const std::string& owner);

/// The passphrase for a private key that is to be made, from the first line of the file, otherwise asked for twice.
/// Throws what a source throws, and Fatal "The passphrase is empty", "The passphrase is longer than 1024 bytes" and
/// "The two passphrases differ".
Sealwork::SecureBuffer getNewPassphrase(const std::optional<std::string>& filename);

} // namespace SealTool
