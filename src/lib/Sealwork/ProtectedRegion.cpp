#include <Sealwork/ProtectedRegion.h>

#include <Brindle/Exception.h>
#include <Brindle/Label.h>
#include <Sealwork/EnvelopeDirective.h>
#include <Sealwork/Hex.h>
#include <Sealwork/OpenSsl.h>

#include <algorithm>

namespace Sealwork {

namespace {

constexpr std::string_view vhdl = "vhdl";
constexpr std::string_view verilog = "vlog";

/// Where the first line stands that is the block directive of an envelope; `npos` when there is none. Only lines with a
/// backtick are looked at, each once.
std::size_t findEnvelope(std::string_view text) {
    for (auto backtick = text.find('`'); backtick != text.npos;) {
        const auto begin = text.rfind('\n', backtick) + 1; // `npos` + 1 is 0, the first line.
        const auto end = std::min(text.find('\n', backtick), text.size());
        if (isBlockDirective(text.substr(begin, end - begin)))
            return begin;
        backtick = text.find('`', end);
    }
    return text.npos;
}

void requireNoEnvelope(std::string_view text) {
    const auto envelope = findEnvelope(text);
    if (envelope == text.npos)
        return;
    const auto line = std::ranges::count(text.substr(0, envelope), '\n') + 1;
    throw Brindle::located(Brindle::Fatal("Region already holds a protected envelope"), BRINDLE_HERE,
                           {{"line", Brindle::getLabel(line)}});
}

} // namespace

ProtectedRegion::ProtectedRegion(std::string_view language, std::string_view info, std::string_view text)
    : _language(language), _info(info), _text(text) {
    if (language != vhdl && language != verilog)
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

std::string_view ProtectedRegion::getDirective() const {
    return _language == vhdl ? "`protect " : "`pragma protect ";
}

} // namespace Sealwork
