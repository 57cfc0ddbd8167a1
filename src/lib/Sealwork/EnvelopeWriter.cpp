#include <Sealwork/EnvelopeWriter.h>

#include <Brindle/Label.h>
#include <Sealwork/Base64LineEncoder.h>
#include <Sealwork/EnvelopeMac.h>
#include <Sealwork/Hex.h>
#include <Sealwork/OpenSsl.h>

#include <algorithm>
#include <array>

namespace Sealwork {

namespace {

constexpr std::size_t chunkSize = 16384; ///< Bytes enciphered at a time: what the processor's first cache holds.
constexpr std::string_view operation = "enciphering a region";

/// The lines of one envelope, as they come.
class EnvelopeText {
public:
    explicit EnvelopeText(std::string_view directive) : _directive(directive) {}

    void addDirective(std::string_view directive) { _text.append(_directive).append(directive).append("\n"); }

    void openBlock(std::size_t byteCount, std::string_view block) {
        addDirective("encoding=(enctype=\"base64\", line_length=" + Brindle::getLabel(base64LineCharacters) +
                     ", bytes=" + Brindle::getLabel(byteCount) + ")");
        addDirective(block);
    }

    void closeBlock() { _text += '\n'; }

    std::string& get() { return _text; }

private:
    std::string_view _directive;
    std::string _text;
};

constexpr std::size_t getPaddedSize(std::size_t size) {
    return (size / cipherBlockSize + 1) * cipherBlockSize;
}

CipherContext startCipher(DataMethod method, const SessionKey& session) {
    const EVP_CIPHER* cipher = method == DataMethod::Aes128Cbc ? EVP_aes_128_cbc() : EVP_aes_256_cbc();
    CipherContext context(EVP_CIPHER_CTX_new());
    require(context &&
                EVP_EncryptInit_ex(context.get(), cipher, nullptr, session.key.data(), session.initial.data()) == 1,
            operation, BRINDLE_HERE);
    return context;
}

/// Enciphers the text chunk by chunk and hands on the initial value and each piece of ciphertext while it is hot in the
/// cache.
template <typename Sink>
void encipher(std::string_view text, DataMethod method, const SessionKey& session, Sink sink) {
    const auto context = startCipher(method, session);
    std::array<std::uint8_t, chunkSize + cipherBlockSize> ciphertext{};
    const auto handOn = [&](int size) { sink(std::span(ciphertext).first(static_cast<std::size_t>(size))); };
    sink(std::span(session.initial));
    int size = 0;
    while (!text.empty()) {
        const auto chunk = text.substr(0, chunkSize);
        require(EVP_EncryptUpdate(context.get(), ciphertext.data(), &size, toBytes(chunk), toInt(chunk.size())) == 1,
                operation, BRINDLE_HERE);
        handOn(size);
        text.remove_prefix(chunk.size());
    }
    require(EVP_EncryptFinal_ex(context.get(), ciphertext.data(), &size) == 1, operation, BRINDLE_HERE);
    handOn(size);
}

/// Returns the number of the character at which the authentication code is to stand.
std::size_t addHead(EnvelopeText& envelope, std::string_view infoHex) {
    const std::string macPlace(2 * Sha256Digest().size(), '0');
    const std::string afterMac = "\"";
    envelope.addDirective("begin_protected");
    envelope.addDirective("version=1");
    envelope.addDirective("encrypt_agent=\"Velmora\"");
    envelope.addDirective("encrypt_agent_info=\"Sealwork/1 info=" + std::string(infoHex) + " mac=" + macPlace +
                          afterMac);
    return envelope.get().size() - macPlace.size() - afterMac.size() - 1;
}

void addKeyBlock(EnvelopeText& envelope, const Recipient& recipient, const SessionKey& session) {
    envelope.addDirective("key_keyowner=\"" + recipient.getOwner() + "\", key_keyname=\"" + recipient.getName() +
                          "\", key_method=\"rsa\"");
    envelope.openBlock(recipient.getWrappedSize(), "key_block");
    appendBase64Lines(envelope.get(), recipient.wrap(session.key));
    envelope.closeBlock();
}

/// Returns the authentication code.
Sha256Digest addDataBlock(EnvelopeText& envelope, const ProtectedRegion& region, DataMethod method,
                          const SessionKey& session) {
    const std::size_t dataSize = cipherBlockSize + getPaddedSize(region.getText().size());
    const std::size_t directivesSize = 256; // Those that frame the block.
    std::string& text = envelope.get();
    text.reserve(text.size() + base64LinesSize(dataSize) + directivesSize);
    envelope.addDirective("data_method=\"" + std::string(getName(method)) + "\"");
    envelope.openBlock(dataSize, "data_block");
    EnvelopeMac mac(session.key, region.getLanguage(), method, region.getInfoHex());
    Base64LineEncoder encoder(text);
    encipher(region.getText(), method, session, [&](std::span<const std::uint8_t> data) {
        mac.update(data);
        encoder.append(data);
    });
    encoder.finish();
    envelope.closeBlock();
    return mac.finish();
}

} // namespace

std::string EnvelopeWriter::write(const ProtectedRegion& region) const {
    return write(region, SessionKey::make(_method));
}

std::string EnvelopeWriter::write(const ProtectedRegion& region, const SessionKey& session) const {
    const ErrorScope scope;
    EnvelopeText envelope(region.getDirective());
    const std::size_t macPosition = addHead(envelope, region.getInfoHex());
    for (const auto& recipient : _recipients.getRecipients())
        addKeyBlock(envelope, recipient, session);
    const std::string mac = toHex(addDataBlock(envelope, region, _method, session));
    envelope.addDirective("end_protected");
    envelope.get().replace(macPosition, mac.size(), mac);
    return std::move(envelope.get());
}

} // namespace Sealwork
