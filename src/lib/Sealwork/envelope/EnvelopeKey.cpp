#include <Sealwork/envelope/EnvelopeKey.h>

#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/keys/KeyFile.h>

#include <openssl/rsa.h>

namespace Sealwork {

EnvelopeKey EnvelopeKey::load(const std::filesystem::path& filename, const PassphraseSource& passphrase) {
    auto key = AsymmetricKey::parsePrivate(readKeyFile(filename).text(), passphrase);
    if (!key || !key->isOfType("RSA"))
        refuseKeyFile(filename, "not an RSA private key, or not its passphrase", BRINDLE_HERE);
    return EnvelopeKey(std::move(*key));
}

std::size_t EnvelopeKey::getWrappedSize() const {
    return static_cast<std::size_t>(EVP_PKEY_get_size(_key.getHandle()));
}

std::optional<SecureBuffer> EnvelopeKey::unwrap(std::span<const std::uint8_t> wrapped) const {
    const ErrorScope scope;
    const KeyContext context(EVP_PKEY_CTX_new(_key.getHandle(), nullptr));
    require(context && EVP_PKEY_decrypt_init(context.get()) == 1 &&
                EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) == 1,
            "unwrapping a session key", BRINDLE_HERE);
    SecureBuffer sessionKey(getWrappedSize());
    std::size_t size = sessionKey.size();
    if (EVP_PKEY_decrypt(context.get(), sessionKey.data(), &size, wrapped.data(), wrapped.size()) != 1)
        return std::nullopt;
    sessionKey.shrink(size);
    return sessionKey;
}

} // namespace Sealwork
