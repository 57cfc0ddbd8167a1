#include <Sealwork/keys/SignerKey.h>

#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/keys/KeyFile.h>

namespace Sealwork {

SignerKey SignerKey::load(const std::filesystem::path& filename) {
    auto key = AsymmetricKey::parsePublic(readKeyFile(filename).text());
    if (!key || !key->isOfType("ED25519"))
        refuseKeyFile(filename, "not an Ed25519 public key", BRINDLE_HERE);
    return SignerKey(std::move(*key));
}

bool SignerKey::verify(std::string_view message, const Signature& signature) const {
    const ErrorScope scope;
    const DigestContext context(EVP_MD_CTX_new());
    require(context && EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, _key.getHandle()) == 1,
            "checking a signature", BRINDLE_HERE);
    return EVP_DigestVerify(context.get(), signature.data(), signature.size(), toBytes(message), message.size()) == 1;
}

} // namespace Sealwork
