#include <Sealwork/script/ScriptSealer.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/base/Random.h>
#include <Sealwork/script/ScriptContainer.h>

namespace Sealwork {

namespace {

void requireSealable(std::string_view script) {
    if (script.size() > ScriptContainer::largestScript)
        throw Brindle::located(Brindle::InvalidRequest("Script too large"), BRINDLE_HERE,
                               {{"size", Brindle::getLabel(script.size())}});
    if (ScriptContainer::isSealed(script))
        throw Brindle::located(Brindle::InvalidRequest("Script is sealed already"), BRINDLE_HERE);
}

void encipher(ScriptContainer& container, const ScriptKey& key, std::string_view script) {
    const ErrorScope scope;
    const CipherContext context(EVP_CIPHER_CTX_new());
    const std::string header = container.getHeader();
    int size = 0;
    std::uint8_t* const tag = container.payload.data() + script.size();
    require(context &&
                EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.getBytes().data(),
                                   container.nonce.data()) == 1 &&
                EVP_EncryptUpdate(context.get(), nullptr, &size, toBytes(header), toInt(header.size())) == 1 &&
                EVP_EncryptUpdate(context.get(), container.payload.data(), &size, toBytes(script),
                                  toInt(script.size())) == 1 &&
                EVP_EncryptFinal_ex(context.get(), tag, &size) == 1 &&
                EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, ScriptContainer::tagSize, tag) == 1,
            "sealing a script", BRINDLE_HERE);
}

} // namespace

std::string ScriptSealer::seal(std::string_view script) const {
    requireSealable(script);
    ScriptContainer container;
    container.keyId = _key.getId();
    fillRandom(container.nonce);
    if (_signer)
        container.signerId = _signer->getId();
    container.payload.resize(script.size() + ScriptContainer::tagSize);
    encipher(container, _key, script);
    if (_signer)
        container.signature = _signer->sign(container.getSignedMessage());
    return container.format();
}

} // namespace Sealwork
