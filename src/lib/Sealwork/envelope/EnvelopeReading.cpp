#include <Sealwork/envelope/EnvelopeReading.h>

#include <Brindle/core/TextLines.h>
#include <Sealwork/base/Base64LineEncoder.h>
#include <Sealwork/envelope/EnvelopeParser.h>
#include <Sealwork/envelope/EnvelopeRefused.h>
#include <Sealwork/envelope/EnvelopeText.h>

#include <algorithm>

namespace Sealwork {

namespace {

/// The one text that such an envelope is written as.
std::string format(const Envelope& envelope, const EnvelopeSeal& seal) {
    std::string text;
    EnvelopeText lines(text, envelope.language);
    lines.addHead(seal);
    for (const auto& block : envelope.keyBlocks) {
        lines.openKeyBlock(block.owner, block.name, block.wrapped.size());
        appendBase64Lines(text, block.wrapped);
        lines.closeBlock();
    }
    lines.openDataBlock(envelope.dataMethod, envelope.data.size());
    appendBase64Lines(text, envelope.data);
    lines.closeBlock();
    lines.addEnd();
    return text;
}

void requireOwn(const Envelope& envelope, std::string_view text, std::size_t firstLine) {
    const auto seal = envelope.getSeal();
    if (envelope.agent != EnvelopeText::agent || !seal)
        refuseMalformed(firstLine, "not written by " + std::string(EnvelopeText::agent), BRINDLE_HERE);
    const auto expected = format(envelope, *seal);
    if (text == expected)
        return;
    const auto difference = std::ranges::mismatch(text, expected).in1 - text.begin();
    refuseMalformed(firstLine + Brindle::getLineNumber(text, static_cast<std::size_t>(difference)) - 1,
                    "not as " + std::string(EnvelopeText::agent) + " writes it", BRINDLE_HERE);
}

} // namespace

Envelope readEnvelope(std::string_view text, EnvelopeReading reading, std::size_t firstLine) {
    auto envelope = EnvelopeParser(text, firstLine).parse();
    if (reading == EnvelopeReading::Strict)
        requireOwn(envelope, text, firstLine);
    return envelope;
}

} // namespace Sealwork
