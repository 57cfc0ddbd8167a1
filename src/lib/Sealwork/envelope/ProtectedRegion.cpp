#include <Sealwork/envelope/ProtectedRegion.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>
#include <Sealwork/base/Hex.h>
#include <Sealwork/base/OpenSsl.h>
#include <Sealwork/envelope/EnvelopeDirective.h>
#include <Sealwork/envelope/HdlLanguage.h>

namespace Sealwork {

namespace {

void requireNoEnvelope(std::string_view text) {
    BacktickLines lines(text);
    while (const auto line = lines.next())
        if (isBlockDirective(line->text))
            throw Brindle::located(Brindle::Fatal("Region already holds a protected envelope"), BRINDLE_HERE,
                                   {{"line", Brindle::getLabel(Brindle::getLineNumber(text, line->begin))}});
}

} // namespace

ProtectedRegion::ProtectedRegion(std::string_view language, std::string_view info, std::string_view text)
    : _language(language), _info(info), _text(text) {
    if (language != vhdlLanguage && language != verilogLanguage)
        throw Brindle::located(Brindle::InvalidRequest("Unknown language"), BRINDLE_HERE,
                               {{"language", std::string(language)}});
    if (info.size() != infoSize)
        throw Brindle::located(Brindle::InvalidRequest("Information block should be 16 bytes"), BRINDLE_HERE,
                               {{"size", Brindle::getLabel(info.size())}});
    if (text.size() > largestRegion)
        throw Brindle::located(Brindle::InvalidRequest("Region too large"), BRINDLE_HERE,
                               {{"size", Brindle::getLabel(text.size())}});
    requireNoEnvelope(text);
}

std::string ProtectedRegion::getInfoHex() const {
    return toHex({toBytes(_info), _info.size()});
}

} // namespace Sealwork
