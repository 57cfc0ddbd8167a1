#pragma once

#include <Sealwork/AsymmetricKey.h>

#include <optional>
#include <string>

namespace SealTool {

/// Where the passphrase of an enciphered private key comes from: the first line of the file, otherwise the terminal.
/// The source throws Fatal "Unable to read key file" for the file and "Unable to ask for the passphrase, give
/// --passphrase-file" without a terminal.
Sealwork::PassphraseSource getPassphraseSource(const std::optional<std::string>& filename);

} // namespace SealTool
