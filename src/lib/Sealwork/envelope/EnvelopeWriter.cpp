#include <Sealwork/envelope/EnvelopeWriter.h>

#include <Sealwork/base/Base64LineEncoder.h>
#include <Sealwork/base/Hex.h>
#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/base/SideWorker.h>
#include <Sealwork/envelope/EnvelopeCipher.h>
#include <Sealwork/envelope/EnvelopeMac.h>
#include <Sealwork/envelope/EnvelopeText.h>

#include <algorithm>
#include <array>

namespace Sealwork {

namespace {

constexpr std::string_view operation = "enciphering a region";
constexpr std::size_t smallestSideBySide = 1U << 19U; // Bytes: less is done before a thread is of use.

constexpr std::size_t getPaddedSize(std::size_t size) {
    return (size / cipherBlockSize + 1) * cipherBlockSize;
}

/// Enciphers the text chunk by chunk and hands on the initial value and each piece of ciphertext while it is hot in the
/// cache.
template <typename Sink>
void encipher(std::string_view text, DataMethod method, const SessionKey& session, Sink sink) {
    const auto context = startCipher(method, session.key, session.initial, CipherDirection::Encipher);
    std::array<std::uint8_t, cipherChunkSize + cipherBlockSize> ciphertext{};
    const auto handOn = [&](int size) { sink(std::span(ciphertext).first(static_cast<std::size_t>(size))); };
    sink(std::span(session.initial));
    int size = 0;
    while (!text.empty()) {
        const auto chunk = text.substr(0, cipherChunkSize);
        require(EVP_EncryptUpdate(context.get(), ciphertext.data(), &size, toBytes(chunk), toInt(chunk.size())) == 1,
                operation, BRINDLE_HERE);
        handOn(size);
        text.remove_prefix(chunk.size());
    }
    require(EVP_EncryptFinal_ex(context.get(), ciphertext.data(), &size) == 1, operation, BRINDLE_HERE);
    handOn(size);
}

void addKeyBlock(std::string& out, EnvelopeText& lines, const Recipient& recipient, const SessionKey& session) {
    lines.openKeyBlock(recipient.getOwner(), recipient.getName(), recipient.getWrappedSize());
    appendBase64Lines(out, recipient.wrap(session.key));
    lines.closeBlock();
}

/// Returns the authentication code.
Sha256Digest addDataBlock(std::string& out, EnvelopeText& lines, const ProtectedRegion& region, DataMethod method,
                          const SessionKey& session) {
    lines.openDataBlock(getName(method), cipherBlockSize + getPaddedSize(region.getText().size()));
    EnvelopeMac mac(session.key, region.getLanguage(), method, region.getInfoHex());
    Base64LineEncoder encoder(out);
    const auto seal = [&](std::span<const std::uint8_t> data) {
        mac.update(data);
        encoder.append(data);
    };
    if (region.getText().size() < smallestSideBySide) {
        encipher(region.getText(), method, session, seal);
    } else {
        // The cipher takes each block's predecessor and so one thread; the rest takes about as long.
        SideWorker worker(seal);
        encipher(region.getText(), method, session, [&](std::span<const std::uint8_t> data) { worker.append(data); });
        worker.finish();
    }
    encoder.finish();
    lines.closeBlock();
    return mac.finish();
}

} // namespace

void EnvelopeWriter::append(std::string& out, const ProtectedRegion& region) const {
    append(out, region, SessionKey::make(_method));
}

void EnvelopeWriter::append(std::string& out, const ProtectedRegion& region, const SessionKey& session) const {
    const ErrorScope scope;
    EnvelopeText lines(out, region.getLanguage());
    lines.addHead({region.getInfoHex(), std::string(2 * Sha256Digest().size(), '0')});
    for (const auto& recipient : _recipients.getRecipients())
        addKeyBlock(out, lines, recipient, session);
    lines.setMac(toHex(addDataBlock(out, lines, region, _method, session)));
    lines.addEnd();
}

} // namespace Sealwork
