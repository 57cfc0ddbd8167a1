#include <Sealwork/envelope/EnvelopeMac.h>

#include <Sealwork/base/OpenSsl.h>

#include <openssl/core_names.h>
#include <openssl/hmac.h>
#include <openssl/params.h>

#include <array>

namespace Sealwork {

namespace {

constexpr std::string_view keyLabel = "velmora-envelope-mac-1";
constexpr std::string_view messageLabel = "velmora-envelope-1";
constexpr std::string_view operation = "authenticating an envelope";

using Mac = std::unique_ptr<EVP_MAC, Release<EVP_MAC_free>>;

SecureBuffer deriveKey(std::span<const std::uint8_t> sessionKey) {
    SecureBuffer key(Sha256Digest().size());
    require(HMAC(EVP_sha256(), sessionKey.data(), toInt(sessionKey.size()), toBytes(keyLabel), keyLabel.size(),
                 key.data(), nullptr) != nullptr,
            operation, BRINDLE_HERE);
    return key;
}

} // namespace

void EnvelopeMac::Release::operator()(evp_mac_ctx_st* context) const noexcept {
    EVP_MAC_CTX_free(context);
}

EnvelopeMac::EnvelopeMac(std::span<const std::uint8_t> sessionKey, std::string_view language, DataMethod method,
                         std::string_view infoHex) {
    const ErrorScope scope;
    const SecureBuffer key = deriveKey(sessionKey);
    const Mac hmac(EVP_MAC_fetch(nullptr, "HMAC", nullptr));
    _context.reset(EVP_MAC_CTX_new(hmac.get()));
    auto digest = std::to_array("SHA256");
    const std::array parameters{OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest.data(), 0),
                                OSSL_PARAM_construct_end()};
    require(_context && EVP_MAC_init(_context.get(), key.data(), key.size(), parameters.data()) == 1, operation,
            BRINDLE_HERE);
    for (const auto part : {messageLabel, language, getName(method), infoHex}) {
        update(part);
        update("\n");
    }
}

void EnvelopeMac::update(std::span<const std::uint8_t> data) {
    require(EVP_MAC_update(_context.get(), data.data(), data.size()) == 1, operation, BRINDLE_HERE);
}

void EnvelopeMac::update(std::string_view text) {
    update({toBytes(text), text.size()});
}

Sha256Digest EnvelopeMac::finish() {
    const ErrorScope scope;
    Sha256Digest code;
    std::size_t size = 0;
    require(EVP_MAC_final(_context.get(), code.data(), &size, code.size()) == 1, operation, BRINDLE_HERE);
    return code;
}

} // namespace Sealwork
