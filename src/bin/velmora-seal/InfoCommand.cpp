#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>
#include <Sealwork/base/Hex.h>
#include <Sealwork/envelope/DataMethod.h>
#include <Sealwork/envelope/EnvelopeReading.h>
#include <Sealwork/envelope/HdlLanguage.h>
#include <Sealwork/envelope/HdlPieces.h>
#include <Sealwork/script/ScriptContainer.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/NothingToOpen.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>
#include <velmora/rules/InformationBlock.h>

#include <array>
#include <ctime>
#include <iostream>

namespace SealTool {

namespace {

using Sealwork::Envelope;

constexpr std::string_view help =
    R"(Usage: velmora-seal info FILE

Tells, without any key, what the envelopes of the HDL file or the sealed script FILE say of themselves. "-" stands for
standard input. Nothing of that is checked.

Example: velmora-seal info delivery/top.vhd
)";

/// One line: what it is about, and what there is to say.
void tell(std::string_view subject, std::string_view text) {
    std::cout << "  " << subject << std::string(12 - subject.size(), ' ') << Brindle::getPrintable(text) << '\n';
}

std::string getByteCount(std::size_t count) {
    return Brindle::getLabel(count) + (count == 1 ? " byte" : " bytes");
}

std::string getTime(std::int32_t minutes) {
    const std::time_t seconds = std::time_t{minutes} * 60;
    std::tm time{};
    std::array<char, 64> text{};
    gmtime_r(&seconds, &time);
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M UTC", &time)};
}

void tellMaking(const Sealwork::EnvelopeSeal& seal) {
    std::string bytes(Velmora::InformationBlock::size, '\0');
    Sealwork::fromHex(seal.infoHex, {reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()});
    const auto info = Velmora::InformationBlock::parse(bytes);
    tell("made", getTime(info->minutes) + " by " + info->tool + ", format " + Brindle::getLabel(info->format));
}

void tellEnvelope(const Envelope& envelope, const std::string& place) {
    const bool isVhdl = envelope.language == Sealwork::vhdlLanguage;
    std::cout << place << ": envelope, " << (isVhdl ? "VHDL" : "Verilog") << ", version "
              << Brindle::getPrintable(envelope.version) << '\n';
    tell("agent", envelope.agent);
    const auto seal = envelope.getSeal();
    if (seal)
        tellMaking(*seal);
    else if (!envelope.agentInfo.empty())
        tell("agent info", envelope.agentInfo);
    for (const auto& block : envelope.keyBlocks)
        tell("recipient", block.owner + " / " + block.name + ", " + block.method + ", " +
                              Brindle::getLabel(8 * block.wrapped.size()) + " bits");
    tell("data", envelope.dataMethod + ", " + getByteCount(envelope.data.size()));
    tell("MAC", seal ? "present, not checked" : "none: whether it was altered cannot be told");
}

void tellScript(const Sealwork::ScriptContainer& container, const std::string& place) {
    std::cout << place << ": sealed script\n";
    tell("key", container.keyId);
    tell("script", getByteCount(container.getScriptSize()));
    tell("tag", "present, not checked; it proves no more than that the file is not damaged, for all who use the "
                "installation can read its key");
    tell("signature", container.signerId ? "by " + *container.signerId + ", not checked"
                                         : "none: refused wherever a signer is installed");
}

void tellAll(std::string_view text, const std::string& input) {
    if (Sealwork::ScriptContainer::isSealed(text)) {
        tellScript(Sealwork::ScriptContainer::parse(text), input);
        return;
    }
    bool hasEnvelope = false;
    for (const auto& piece : Sealwork::splitAtEnvelopes(text)) {
        if (!piece.isEnvelope)
            continue;
        hasEnvelope = true;
        tellEnvelope(Sealwork::readEnvelope(piece.text, Sealwork::EnvelopeReading::Lax, piece.line),
                     input + ":" + Brindle::getLabel(piece.line));
    }
    if (!hasEnvelope)
        throw Brindle::located(NothingToOpen("Neither a protected envelope nor a sealed script"), BRINDLE_HERE);
}

int run(const Brindle::CommandLine& commandLine) {
    const auto input = commandLine.getOperand("The file");
    const auto text = readText(input);
    aboutFile(input, [&] { tellAll(text, input); });
    return ExitCode::Done;
}

} // namespace

const Brindle::Command infoCommand{"info", "tell what an envelope or a sealed script says of itself", help, {}, run};

} // namespace SealTool
