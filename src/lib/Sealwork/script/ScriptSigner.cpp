#include <Sealwork/script/ScriptSigner.h>

#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/keys/KeyFile.h>

namespace Sealwork {

ScriptSigner ScriptSigner::load(const std::filesystem::path& filename, const PassphraseSource& passphrase) {
    auto key = AsymmetricKey::parsePrivate(readKeyFile(filename).text(), passphrase);
    if (!key || !key->isOfType("ED25519"))
        refuseKeyFile(filename, "not an Ed25519 private key, or not its passphrase", BRINDLE_HERE);
    return ScriptSigner(std::move(*key));
}

Signature ScriptSigner::sign(std::string_view message) const {
    const ErrorScope scope;
    const DigestContext context(EVP_MD_CTX_new());
    Signature signature;
    std::size_t size = signature.size();
    require(context && EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, _key.getHandle()) == 1 &&
                EVP_DigestSign(context.get(), signature.data(), &size, toBytes(message), message.size()) == 1 &&
                size == signature.size(),
            "signing", BRINDLE_HERE);
    return signature;
}

} // namespace Sealwork
