#include <Sealwork/envelope/EnvelopeOpener.h>

#include <Sealwork/base/Hex.h>
#include <Sealwork/base/Random.h>
#include <Sealwork/envelope/EnvelopeCipher.h>
#include <Sealwork/envelope/EnvelopeMac.h>
#include <Sealwork/envelope/EnvelopeRefused.h>

#include <openssl/crypto.h>

#include <algorithm>

namespace Sealwork {

namespace {

[[noreturn]] void refuse(EnvelopeFault fault, const Brindle::Location& location) {
    throw Brindle::located(EnvelopeRefused(fault), location);
}

DataMethod getMethod(const Envelope& envelope) {
    const auto method = findDataMethod(envelope.dataMethod);
    if (!method)
        throw Brindle::located(EnvelopeRefused(EnvelopeFault::UnsupportedMethod), BRINDLE_HERE,
                               {{"method", envelope.dataMethod}});
    return *method;
}

bool isAuthentic(const Envelope& envelope, DataMethod method, std::span<const std::uint8_t> sessionKey) {
    const auto seal = envelope.getSeal();
    if (!seal)
        return true; // There is nothing to tell by.
    const ErrorScope scope;
    EnvelopeMac mac(sessionKey, envelope.language, method, seal->infoHex);
    mac.update(envelope.data);
    const auto macHex = toHex(mac.finish());
    return CRYPTO_memcmp(macHex.data(), seal->macHex.data(), macHex.size()) == 0;
}

struct UnwrappedKey {
    SecureBuffer bytes;
    bool isUnwrapped = false;
};

/// The session key. Whoever sees what becomes of altered blocks must not learn whether one was padded as it should be
/// (Bleichenbacher, 1998): a made-up key stands for one that was not, and goes the same way.
UnwrappedKey unwrap(const EnvelopeKey& key, const EnvelopeKeyBlock& block, DataMethod method) {
    SecureBuffer madeUp(getKeySize(method));
    fillSecretRandom(madeUp);
    auto sessionKey = key.unwrap(block.wrapped);
    if (!sessionKey || sessionKey->size() != madeUp.size())
        return {std::move(madeUp), false};
    return {std::move(*sessionKey), true};
}

/// None when the padding is wrong.
std::optional<SecureBuffer> decipher(std::span<const std::uint8_t> data, DataMethod method,
                                     std::span<const std::uint8_t> sessionKey) {
    const ErrorScope scope;
    const auto context = startCipher(method, sessionKey, data.first(cipherBlockSize), CipherDirection::Decipher);
    auto ciphertext = data.subspan(cipherBlockSize);
    SecureBuffer text(ciphertext.size());
    std::size_t textSize = 0;
    int size = 0;
    while (!ciphertext.empty()) {
        const auto chunk = ciphertext.first(std::min(ciphertext.size(), cipherChunkSize));
        require(EVP_DecryptUpdate(context.get(), text.data() + textSize, &size, chunk.data(), toInt(chunk.size())) == 1,
                "deciphering a region", BRINDLE_HERE);
        textSize += static_cast<std::size_t>(size);
        ciphertext = ciphertext.subspan(chunk.size());
    }
    if (EVP_DecryptFinal_ex(context.get(), text.data() + textSize, &size) != 1)
        return std::nullopt;
    text.shrink(textSize + static_cast<std::size_t>(size));
    return text;
}

} // namespace

SecureBuffer EnvelopeOpener::open(const Envelope& envelope) const {
    const auto method = getMethod(envelope);
    if (envelope.data.size() < 2 * cipherBlockSize || envelope.data.size() % cipherBlockSize != 0)
        refuse(EnvelopeFault::Altered, BRINDLE_HERE);
    auto fault = EnvelopeFault::NoKey;
    for (const auto& block : envelope.keyBlocks) {
        if (block.method != "rsa" || block.wrapped.size() != _key.getWrappedSize())
            continue;
        fault = EnvelopeFault::Altered;
        const auto sessionKey = unwrap(_key, block, method);
        if (!isAuthentic(envelope, method, sessionKey.bytes) || !sessionKey.isUnwrapped)
            continue;
        if (auto text = decipher(envelope.data, method, sessionKey.bytes))
            return std::move(*text);
    }
    refuse(fault, BRINDLE_HERE);
}

} // namespace Sealwork
