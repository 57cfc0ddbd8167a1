#include <velmora-seal/Passphrase.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/FileDescriptor.h>
#include <Sealwork/keys/KeyFile.h>
#include <velmora-seal/TerminalPrompt.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>

namespace SealTool {

namespace {

using Sealwork::AsymmetricKey;
using Sealwork::SecureBuffer;

void cutToFirstLine(SecureBuffer& content) {
    const auto text = content.text();
    content.shrink(std::min(text.find_first_of("\r\n"), text.size()));
}

SecureBuffer readFromTerminal(const std::string& prompt) {
    return askOnTerminal(prompt, AsymmetricKey::longestPassphrase);
}

/// A pipe will do, as another program may write to it what it keeps. Of a line that is too long enough is read to tell.
SecureBuffer readFromFile(const std::string& filename) {
    const Brindle::FileDescriptor file(open(filename.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        Sealwork::refuseKeyFile(filename, std::strerror(errno), BRINDLE_HERE);
    SecureBuffer content(AsymmetricKey::longestPassphrase + 1);
    const auto size = file.read(content);
    if (size < 0)
        Sealwork::refuseKeyFile(filename, std::strerror(errno), BRINDLE_HERE);
    content.shrink(static_cast<std::size_t>(size));
    cutToFirstLine(content);
    return content;
}

} // namespace

Sealwork::PassphraseSource getPassphraseSource(const std::optional<std::string>& filename, const std::string& owner) {
    if (!filename)
        return [prompt = "Passphrase of " + owner + "'s key: "] { return readFromTerminal(prompt); };
    return [name = *filename] { return readFromFile(name); };
}

SecureBuffer getNewPassphrase(const std::optional<std::string>& filename) {
    auto passphrase = filename ? readFromFile(*filename) : readFromTerminal("New passphrase: ");
    if (passphrase.size() == 0)
        throw Brindle::located(Brindle::Fatal("The passphrase is empty"), BRINDLE_HERE);
    if (passphrase.size() > AsymmetricKey::longestPassphrase)
        throw Brindle::located(Brindle::Fatal("The passphrase is longer than 1024 bytes"), BRINDLE_HERE);
    if (!filename && readFromTerminal("The same again: ").text() != passphrase.text())
        throw Brindle::located(Brindle::Fatal("The two passphrases differ"), BRINDLE_HERE);
    return passphrase;
}

} // namespace SealTool
