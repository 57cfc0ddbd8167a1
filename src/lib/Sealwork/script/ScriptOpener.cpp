#include <Sealwork/script/ScriptOpener.h>

#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/script/ScriptContainer.h>
#include <Sealwork/script/ScriptRefused.h>

#include <algorithm>
#include <array>

namespace Sealwork {

namespace {

/// What the payload holds, in a buffer that is overwritten if the tag turns out wrong.
SecureBuffer decipher(const ScriptContainer& container, const ScriptKey& key) {
    const ErrorScope scope;
    const CipherContext context(EVP_CIPHER_CTX_new());
    const std::string header = container.getHeader();
    SecureBuffer script(container.getScriptSize());
    std::array<std::uint8_t, ScriptContainer::tagSize> tag{};
    std::copy_n(container.payload.end() - ScriptContainer::tagSize, tag.size(), tag.begin());
    int size = 0;
    require(
        context &&
            EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.getBytes().data(),
                               container.nonce.data()) == 1 &&
            EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG, toInt(tag.size()), tag.data()) == 1 &&
            EVP_DecryptUpdate(context.get(), nullptr, &size, toBytes(header), toInt(header.size())) == 1 &&
            EVP_DecryptUpdate(context.get(), script.data(), &size, container.payload.data(), toInt(script.size())) == 1,
        "opening a script", BRINDLE_HERE);
    std::uint8_t nothing = 0;
    if (EVP_DecryptFinal_ex(context.get(), &nothing, &size) != 1)
        throw Brindle::located(ScriptRefused(ScriptFault::Altered), BRINDLE_HERE);
    return script;
}

} // namespace

std::string ScriptOpener::open(std::string_view text) const {
    const auto container = ScriptContainer::parse(text);
    checkSignature(container);
    const ScriptKey* key = _keys.find(container.keyId);
    if (!key)
        throw Brindle::located(ScriptRefused(ScriptFault::KeyNotInstalled), BRINDLE_HERE, {{"keyId", container.keyId}});
    return std::string(decipher(container, *key).text());
}

void ScriptOpener::checkSignature(const ScriptContainer& container) const {
    if (_signers.isEmpty())
        return;
    if (!container.signerId)
        throw Brindle::located(ScriptRefused(ScriptFault::NotSigned), BRINDLE_HERE);
    const SignerKey* signer = _signers.find(*container.signerId);
    if (!signer)
        throw Brindle::located(ScriptRefused(ScriptFault::UnknownSigner), BRINDLE_HERE,
                               {{"signer", *container.signerId}});
    if (!signer->verify(container.getSignedMessage(), *container.signature))
        throw Brindle::located(ScriptRefused(ScriptFault::Altered), BRINDLE_HERE);
}

} // namespace Sealwork
