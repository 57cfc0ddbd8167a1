#include <fuzz/Property.h>

#include <Sealwork/envelope/EnvelopeReading.h>
#include <Sealwork/envelope/EnvelopeRefused.h>
#include <Sealwork/envelope/HdlPieces.h>

#include <cstdint>
#include <optional>
#include <string>

namespace {

using Sealwork::Envelope;
using Sealwork::EnvelopeReading;

std::optional<Envelope> parse(std::string_view text, EnvelopeReading reading) {
    try {
        return Sealwork::readEnvelope(text, reading);
    } catch (const Sealwork::EnvelopeRefused& refusal) {
        require(refusal.getFault() == Sealwork::EnvelopeFault::Malformed, "what cannot be read is malformed");
        require(!refusal.getField("line").empty() && !refusal.getField("reason").empty(), "a refusal tells why");
        return std::nullopt;
    }
}

void checkParsed(std::string_view text) {
    const auto strict = parse(text, EnvelopeReading::Strict);
    const auto lax = parse(text, EnvelopeReading::Lax);
    require(!strict || lax, "what is read strictly is read laxly too");
    require(!strict || strict->getSeal(), "what is read strictly has an authentication code");
    require(!strict || lax->data == strict->data, "both readings agree");
    require(!lax || (!lax->data.empty() && !lax->keyBlocks.empty()), "an envelope has data and a recipient");
    require(!lax || lax->data.size() < text.size(), "no byte is invented");
}

void checkPieces(std::string_view text) {
    std::string joined;
    for (const auto& piece : Sealwork::splitAtEnvelopes(text)) {
        joined += piece.text;
        if (piece.isEnvelope)
            checkParsed(piece.text);
    }
    require(joined == text, "the pieces are the whole text");
}

} // namespace

/// The input is an HDL text in which envelopes are looked for, and itself taken for one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkParsed(text);
    try {
        checkPieces(text);
    } catch (const Sealwork::EnvelopeRefused& refusal) {
        require(refusal.getFault() == Sealwork::EnvelopeFault::Malformed, "what cannot be split is malformed");
    }
    return 0;
}
