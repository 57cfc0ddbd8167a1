#pragma once

#include <Sealwork/base/SecureBuffer.h>

#include <string>

namespace SealTool {

/// Asks on the terminal for a line that is not shown, of which at most `longest` bytes and one are kept. The terminal
/// is as it was when this ends, also by a signal: Ctrl-C ends the program. Throws Fatal "Unable to ask for the
/// passphrase, give --passphrase-file" without a terminal.
Sealwork::SecureBuffer askOnTerminal(const std::string& prompt, std::size_t longest);

} // namespace SealTool
