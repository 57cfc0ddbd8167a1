#include <Sealwork/Crypto.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Sealwork/envelope/EnvelopeWriter.h>
#include <Sealwork/envelope/SealConfiguration.h>
#include <Sealwork/keys/KeyDirectory.h>
#include <Sealwork/script/ScriptOpener.h>

#include <utility>

namespace Sealwork {

namespace {

constexpr int bothDirections = 1;
constexpr int allRecipients = -1;
constexpr int installedScriptKeys = 0;

void requireSelector(int selector, int expected, const Brindle::Location& location) {
    if (selector != expected)
        throw Brindle::located(Brindle::InvalidRequest("Unknown selector"), location,
                               {{"selector", Brindle::getLabel(selector)}});
}

} // namespace

Crypto::Crypto(int mode) {
    if (mode != bothDirections)
        throw Brindle::located(Brindle::InvalidRequest("Unknown mode"), BRINDLE_HERE,
                               {{"mode", Brindle::getLabel(mode)}});
}

void Crypto::getEncrypted(int selector, const std::string& language, const std::string& info, const std::string& text,
                          std::string& out) const {
    requireSelector(selector, allRecipients, BRINDLE_HERE);
    const ProtectedRegion region(language, info, text);
    const auto directory = KeyDirectory::locate();
    const auto configuration = SealConfiguration::load(directory.getConfiguration());
    const auto recipients = RecipientKeys::load(directory.getRecipients());
    std::string envelope;
    EnvelopeWriter(recipients, configuration.dataMethod).append(envelope, region);
    out = std::move(envelope);
}

void Crypto::getDecrypted(int selector, const std::string& in, std::string& out) const {
    requireSelector(selector, installedScriptKeys, BRINDLE_HERE);
    const auto directory = KeyDirectory::locate();
    const auto keys = ScriptKeys::load(directory.getScripts());
    const auto signers = SignerKeys::load(directory.getSigners());
    out = ScriptOpener(keys, signers).open(in);
}

} // namespace Sealwork
