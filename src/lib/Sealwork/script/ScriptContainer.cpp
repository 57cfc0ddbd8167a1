#include <Sealwork/script/ScriptContainer.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>
#include <Sealwork/base/Base64LineEncoder.h>
#include <Sealwork/base/Hex.h>
#include <Sealwork/base/Sha256.h>
#include <Sealwork/script/ScriptRefused.h>

#include <charconv>

namespace Sealwork {

namespace {

constexpr std::string_view beginLine = "-----BEGIN VELMORA SEALED SCRIPT-----";
constexpr std::string_view endLine = "-----END VELMORA SEALED SCRIPT-----";
constexpr std::string_view formatField = "Format: ";
constexpr std::string_view formatVersion = "1";
constexpr std::string_view cipherField = "Cipher: ";
constexpr std::string_view cipherName = "AES-256-GCM";
constexpr std::string_view keyIdField = "Key-Id: ";
constexpr std::string_view nonceField = "Nonce: ";
constexpr std::string_view lengthField = "Length: ";
constexpr std::string_view signerField = "Signer: ";
constexpr std::string_view signatureField = "Signature: ";

void requireShape(bool fits, ScriptFault fault, const Brindle::Location& location) {
    if (!fits)
        throw Brindle::located(ScriptRefused(fault), location);
}

std::string_view takeField(Brindle::TextLines& lines, std::string_view field) {
    const auto value = Brindle::getFieldValue(lines.next(), field);
    requireShape(value.has_value(), ScriptFault::Malformed, BRINDLE_HERE);
    return *value;
}

void takeSupported(Brindle::TextLines& lines, std::string_view field, std::string_view supported) {
    requireShape(takeField(lines, field) == supported, ScriptFault::UnsupportedFormat, BRINDLE_HERE);
}

std::string takeId(std::string_view value) {
    requireShape(isLowerHex(value, shortIdDigits), ScriptFault::Malformed, BRINDLE_HERE);
    return std::string(value);
}

template <std::size_t Size>
std::array<std::uint8_t, Size> takeBytes(Brindle::TextLines& lines, std::string_view field) {
    const auto value = takeField(lines, field);
    std::array<std::uint8_t, Size> bytes{};
    requireShape(isLowerHex(value, 2 * Size) && fromHex(value, bytes), ScriptFault::Malformed, BRINDLE_HERE);
    return bytes;
}

std::size_t takeLength(Brindle::TextLines& lines) {
    const auto value = takeField(lines, lengthField);
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), length);
    const bool isCanonical = error == std::errc() && Brindle::getLabel(length) == value;
    requireShape(isCanonical && length <= ScriptContainer::largestScript, ScriptFault::Malformed, BRINDLE_HERE);
    return length;
}

std::optional<std::string> takeSigner(Brindle::TextLines& lines) {
    const auto line = lines.next();
    if (line && line->empty())
        return std::nullopt;
    const auto signer = Brindle::getFieldValue(line, signerField);
    requireShape(signer.has_value(), ScriptFault::Malformed, BRINDLE_HERE);
    auto id = takeId(*signer);
    requireShape(lines.next() == "", ScriptFault::Malformed, BRINDLE_HERE);
    return id;
}

std::vector<std::uint8_t> takePayload(Brindle::TextLines& lines, std::size_t size) {
    // Nothing is set aside for bytes that the text does not hold.
    const auto text = lines.take(base64LinesSize(size));
    requireShape(text.size() == base64LinesSize(size), ScriptFault::Malformed, BRINDLE_HERE);
    std::vector<std::uint8_t> payload(size);
    requireShape(decodeBase64Lines(text, payload), ScriptFault::Malformed, BRINDLE_HERE);
    return payload;
}

void appendField(std::string& text, std::string_view field, std::string_view value) {
    text.append(field).append(value).append("\n");
}

} // namespace

bool ScriptContainer::isSealed(std::string_view text) {
    return text.starts_with(beginLine);
}

ScriptContainer ScriptContainer::parse(std::string_view text) {
    requireShape(isSealed(text), ScriptFault::NotSealed, BRINDLE_HERE);
    const std::string content = Brindle::withLineFeeds(text);
    Brindle::TextLines lines(content);
    requireShape(lines.next() == beginLine, ScriptFault::Malformed, BRINDLE_HERE);
    takeSupported(lines, formatField, formatVersion);
    takeSupported(lines, cipherField, cipherName);
    ScriptContainer container;
    container.keyId = takeId(takeField(lines, keyIdField));
    container.nonce = takeBytes<12>(lines, nonceField);
    const auto length = takeLength(lines);
    container.signerId = takeSigner(lines);
    container.payload = takePayload(lines, length + tagSize);
    if (container.signerId) {
        requireShape(lines.next() == "", ScriptFault::Malformed, BRINDLE_HERE);
        container.signature = takeBytes<64>(lines, signatureField);
    }
    requireShape(lines.next() == endLine && lines.getRest().empty(), ScriptFault::Malformed, BRINDLE_HERE);
    return container;
}

std::string ScriptContainer::getHeader() const {
    std::string header;
    appendField(header, beginLine, {});
    appendField(header, formatField, formatVersion);
    appendField(header, cipherField, cipherName);
    appendField(header, keyIdField, keyId);
    appendField(header, nonceField, toHex(nonce));
    appendField(header, lengthField, Brindle::getLabel(getScriptSize()));
    if (signerId)
        appendField(header, signerField, *signerId);
    return header + "\n";
}

std::string ScriptContainer::getSignedMessage() const {
    return getHeader() + toHex(getSha256(payload)) + "\n";
}

std::string ScriptContainer::format() const {
    std::string text = getHeader();
    const std::size_t endSize = 256; // Signature and last line.
    text.reserve(text.size() + base64LinesSize(payload.size()) + endSize);
    appendBase64Lines(text, payload);
    if (signature) {
        text += '\n';
        appendField(text, signatureField, toHex(*signature));
    }
    appendField(text, endLine, {});
    return text;
}

} // namespace Sealwork
