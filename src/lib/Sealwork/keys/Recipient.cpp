#include <Sealwork/keys/Recipient.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>
#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/keys/RecipientRefused.h>

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <set>

namespace Sealwork {

namespace {

constexpr std::size_t longestName = 128;

using Number = std::unique_ptr<BIGNUM, Release<BN_free>>;

bool isGoodExponent(EVP_PKEY* key) {
    BIGNUM* value = nullptr;
    require(EVP_PKEY_get_bn_param(key, OSSL_PKEY_PARAM_RSA_E, &value) == 1, "reading an RSA exponent", BRINDLE_HERE);
    const Number exponent(value);
    return BN_is_odd(exponent.get()) && BN_num_bits(exponent.get()) > 16; // The smallest such number is 65537.
}

/// The arithmetic check of a public key takes milliseconds, more than all the rest for a small region: what it found
/// good is remembered for the life of the process.
bool isSound(const AsymmetricKey& key) {
    static std::mutex mutex;
    static std::set<Sha256Digest> soundKeys;
    const std::lock_guard lock(mutex);
    const auto digest = key.getDigest();
    if (soundKeys.contains(digest))
        return true;
    const KeyContext context(EVP_PKEY_CTX_new(key.getHandle(), nullptr));
    require(context != nullptr, "checking an RSA key", BRINDLE_HERE);
    const bool isGood = EVP_PKEY_public_check(context.get()) == 1;
    if (isGood)
        soundKeys.insert(digest);
    return isGood;
}

[[noreturn]] void refuse(std::string_view fault, const std::filesystem::path& filename,
                         const Brindle::Location& location) {
    throw Brindle::located(RecipientRefused(fault), location, {{"filename", filename.string()}});
}

[[noreturn]] void refuseLength(std::string_view fault, const std::filesystem::path& filename, unsigned bits,
                               const Brindle::Location& location) {
    throw Brindle::located(RecipientRefused(fault), location,
                           {{"filename", filename.string()}, {"bits", Brindle::getLabel(bits)}});
}

void requireUsable(const AsymmetricKey& key, const std::filesystem::path& filename) {
    if (!key.isOfType("RSA"))
        refuse("not RSA", filename, BRINDLE_HERE);
    const unsigned bits = key.getBits();
    if (bits < Recipient::fewestBits)
        refuseLength("shorter than 2048 bits", filename, bits, BRINDLE_HERE);
    if (bits > Recipient::mostBits)
        refuseLength("longer than 8192 bits", filename, bits, BRINDLE_HERE);
    const ErrorScope scope;
    if (!isGoodExponent(key.getHandle()))
        refuse("exponent not odd or below 65537", filename, BRINDLE_HERE);
    if (!isSound(key))
        refuse("damaged key", filename, BRINDLE_HERE);
}

constexpr std::string_view wrongLayout = "not the lines Key-Owner and Key-Name and one public key";

} // namespace

Recipient Recipient::parse(std::string_view text, const std::filesystem::path& filename) {
    const std::string content = Brindle::withLineFeeds(text);
    Brindle::TextLines lines(content);
    const auto owner = Brindle::getFieldValue(lines.next(), Recipient::ownerField);
    const auto name = Brindle::getFieldValue(lines.next(), Recipient::nameField);
    if (!owner || !name)
        refuse(wrongLayout, filename, BRINDLE_HERE);
    if (!isName(*owner) || !isName(*name))
        refuse("bad owner or name", filename, BRINDLE_HERE);
    auto key = AsymmetricKey::parsePublic(lines.getRest());
    if (!key)
        refuse(wrongLayout, filename, BRINDLE_HERE);
    requireUsable(*key, filename);
    return Recipient(*owner, *name, std::move(*key));
}

std::string Recipient::format(std::string_view owner, std::string_view name, const AsymmetricKey& key) {
    std::string text;
    text.append(ownerField).append(owner).append("\n");
    text.append(nameField).append(name).append("\n");
    return text + key.getPublicPem();
}

bool Recipient::isName(std::string_view text) {
    if (text.empty() || text.size() > longestName || text.front() == ' ' || text.back() == ' ')
        return false;
    return std::ranges::all_of(text, [](char character) {
        return character >= ' ' && character <= '~' && character != '"' && character != '\\' && character != '`';
    });
}

std::size_t Recipient::getWrappedSize() const {
    return static_cast<std::size_t>(EVP_PKEY_get_size(_key.getHandle()));
}

std::vector<std::uint8_t> Recipient::wrap(std::span<const std::uint8_t> sessionKey) const {
    const ErrorScope scope;
    const KeyContext context(EVP_PKEY_CTX_new(_key.getHandle(), nullptr));
    std::vector<std::uint8_t> wrapped(getWrappedSize());
    std::size_t size = wrapped.size();
    require(context && EVP_PKEY_encrypt_init(context.get()) == 1 &&
                EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) == 1 &&
                EVP_PKEY_encrypt(context.get(), wrapped.data(), &size, sessionKey.data(), sessionKey.size()) == 1,
            "wrapping a session key", BRINDLE_HERE);
    return wrapped;
}

} // namespace Sealwork
