#include <Sealwork/keys/AsymmetricKey.h>

#include <Brindle/core/Text.h>
#include <Sealwork/base/OpenSsl.h>

#include <openssl/pem.h>
#include <openssl/x509.h>

#include <cstring>
#include <exception>

namespace Sealwork {

namespace {

bool isOnePublicKey(std::string_view pem) {
    if (!pem.starts_with(AsymmetricKey::publicBegin))
        return false;
    const auto end = pem.find(AsymmetricKey::publicEnd);
    return end != pem.npos &&
           pem.find_first_not_of(Brindle::asciiSpaces, end + AsymmetricKey::publicEnd.size()) == pem.npos;
}

/// What the PEM reader's call for a passphrase needs; an exception may not cross its C frames.
struct PassphraseCall {
    const PassphraseSource& source;
    std::exception_ptr failure;
};

/// A public key has no passphrase. Without this call the PEM reader would ask for one on the terminal when a text's
/// header says that it is enciphered.
int refusePassphrase(char*, int, int, void*) {
    return -1;
}

int givePassphrase(char* buffer, int capacity, int, void* data) {
    auto& call = *static_cast<PassphraseCall*>(data);
    try {
        const SecureBuffer passphrase = call.source();
        if (passphrase.size() > static_cast<std::size_t>(capacity))
            return -1;
        std::memcpy(buffer, passphrase.data(), passphrase.size());
        return toInt(passphrase.size());
    } catch (...) {
        call.failure = std::current_exception();
        return -1;
    }
}

/// The private key in PEM; without a cipher it is not enciphered.
SecureBuffer encodePrivate(const EVP_PKEY& key, const EVP_CIPHER* cipher, std::string_view passphrase) {
    const ErrorScope scope;
    const Bio bio(BIO_new(BIO_s_mem()));
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): its size is the next argument, as an int
    require(bio && PEM_write_bio_PKCS8PrivateKey(bio.get(), &key, cipher, passphrase.data(), toInt(passphrase.size()),
                                                 nullptr, nullptr) == 1,
            "encoding a private key", BRINDLE_HERE);
    return getContent(*bio);
}

} // namespace

void AsymmetricKey::Release::operator()(evp_pkey_st* key) const noexcept {
    EVP_PKEY_free(key);
}

std::optional<AsymmetricKey> AsymmetricKey::parsePublic(std::string_view pem) {
    if (!isOnePublicKey(pem))
        return std::nullopt;
    const ErrorScope scope;
    AsymmetricKey key(PEM_read_bio_PUBKEY(openText(pem).get(), nullptr, refusePassphrase, nullptr));
    return key._key ? std::optional(std::move(key)) : std::nullopt;
}

std::optional<AsymmetricKey> AsymmetricKey::parsePrivate(std::string_view pem, const PassphraseSource& passphrase) {
    const ErrorScope scope;
    PassphraseCall call{passphrase, nullptr};
    AsymmetricKey key(PEM_read_bio_PrivateKey(openText(pem).get(), nullptr, givePassphrase, &call));
    if (call.failure)
        std::rethrow_exception(call.failure);
    return key._key ? std::optional(std::move(key)) : std::nullopt;
}

AsymmetricKey AsymmetricKey::makeRsa(unsigned bits) {
    const ErrorScope scope;
    AsymmetricKey key(EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", static_cast<std::size_t>(bits)));
    require(key._key != nullptr, "making an RSA key", BRINDLE_HERE);
    return key;
}

AsymmetricKey AsymmetricKey::makeEd25519() {
    const ErrorScope scope;
    AsymmetricKey key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
    require(key._key != nullptr, "making an Ed25519 key", BRINDLE_HERE);
    return key;
}

bool AsymmetricKey::isOfType(const char* algorithm) const {
    return EVP_PKEY_is_a(_key.get(), algorithm) == 1;
}

unsigned AsymmetricKey::getBits() const {
    return static_cast<unsigned>(EVP_PKEY_get_bits(_key.get()));
}

Sha256Digest AsymmetricKey::getDigest() const {
    const ErrorScope scope;
    unsigned char* data = nullptr;
    const int size = i2d_PUBKEY(_key.get(), &data);
    require(size > 0, "encoding a public key", BRINDLE_HERE);
    const std::unique_ptr<unsigned char, Sealwork::Release<[](unsigned char* bytes) { OPENSSL_free(bytes); }>> der(
        data);
    return getSha256({der.get(), static_cast<std::size_t>(size)});
}

std::string AsymmetricKey::getPublicPem() const {
    const ErrorScope scope;
    const Bio bio(BIO_new(BIO_s_mem()));
    require(bio && PEM_write_bio_PUBKEY(bio.get(), _key.get()) == 1, "encoding a public key", BRINDLE_HERE);
    return std::string(getContent(*bio).text());
}

SecureBuffer AsymmetricKey::getPrivatePem() const {
    return encodePrivate(*_key, nullptr, {});
}

SecureBuffer AsymmetricKey::getPrivatePem(const SecureBuffer& passphrase) const {
    return encodePrivate(*_key, EVP_aes_256_cbc(), passphrase.text());
}

} // namespace Sealwork
