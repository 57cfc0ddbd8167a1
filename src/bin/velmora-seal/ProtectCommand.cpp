#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/LargeText.h>
#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>
#include <Brindle/files/InputFile.h>
#include <Brindle/tool/UsageError.h>
#include <Sealwork/base/Base64.h>
#include <Sealwork/envelope/EnvelopeDirective.h>
#include <Sealwork/envelope/EnvelopeWriter.h>
#include <Sealwork/envelope/HdlLanguage.h>
#include <Sealwork/envelope/SealConfiguration.h>
#include <Sealwork/keys/KeyDirectory.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/MalformedInput.h>
#include <velmora-seal/NothingToProtect.h>
#include <velmora-seal/Progress.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>
#include <velmora/rules/InformationBlock.h>
#include <velmora/rules/ProtectedRegions.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>

namespace SealTool {

namespace {

using Velmora::RegionWalk;

constexpr std::string_view help =
    R"(Usage: velmora-seal protect IN [-o OUT] [--language auto|vhdl|vlog] [--recipients DIR] [--force]

Writes the HDL file IN with an envelope in the place of every region: the lines between one that holds "`protect begin"
and the next one that holds "`protect end", in both languages. The lines of the markers are dropped, the others stay as
they are. A file without a region is not written, which the exit status 7 tells. "-" stands for standard input or output.

  -o, --output OUT     Where to write; standard output if not given.
  --language LANGUAGE  "vhdl" or "vlog" (Verilog); "auto", the default, goes by the ending of the name: ".vhd" or
                       ".vhdl", and ".v", ".vh", ".sv" or ".svh", in upper or lower case.
  --recipients DIR     Where the public keys of those lie who can open the envelopes. If not given, those of the
                       installation are taken: in the directory that VELMORA_SEAL_DIR names, otherwise in
                       etc/velmora/seal below ORVANE_PREFIX, with what seal.conf there says.
  --force              OUT is replaced if it exists.

Example: velmora-seal protect top.vhd -o delivery/top.vhd
)";

/// Whom to protect for, and how.
struct Protection {
    Sealwork::RecipientKeys recipients;
    Sealwork::DataMethod method{};
};

Protection getProtection(const Brindle::CommandLine& commandLine) {
    if (const auto directory = commandLine.find("recipients"))
        return {Sealwork::RecipientKeys::load(*directory), Sealwork::SealConfiguration().dataMethod};
    const auto installation = Sealwork::KeyDirectory::locate();
    return {Sealwork::RecipientKeys::load(installation.getRecipients()),
            Sealwork::SealConfiguration::load(installation.getConfiguration()).dataMethod};
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> texts) {
    return std::ranges::find(texts, text) != texts.end();
}

std::string getLanguage(const Brindle::CommandLine& commandLine, const std::string& input) {
    auto language = commandLine.find("language").value_or("auto");
    if (language == Sealwork::vhdlLanguage || language == Sealwork::verilogLanguage)
        return language;
    if (language != "auto")
        throw Brindle::located(Brindle::UsageError("--language should be auto, vhdl or vlog"), BRINDLE_HERE);
    if (input == Brindle::standardStream)
        throw Brindle::located(Brindle::UsageError("Standard input has no name to tell its language, give --language"),
                               BRINDLE_HERE);
    // Generated files have other rules; these may come from anywhere.
    const auto ending = Brindle::toLower(std::filesystem::path(input).extension().string());
    if (isOneOf(ending, {".v", ".vh", ".sv", ".svh"}))
        return std::string(Sealwork::verilogLanguage);
    if (isOneOf(ending, {".vhd", ".vhdl"}))
        return std::string(Sealwork::vhdlLanguage);
    throw Brindle::located(Brindle::UsageError("The name " + input + " does not tell its language, give --language"),
                           BRINDLE_HERE);
}

[[noreturn]] void refuse(const std::string& message, std::size_t line, const Brindle::Location& location) {
    throw Brindle::located(MalformedInput(message), location, {{"line", Brindle::getLabel(line)}});
}

/// Adds the envelope of one region to the output.
void protectRegion(std::string& output, const RegionWalk::Piece& piece, std::string_view text,
                   const std::string& language, const Protection& protection) {
    try {
        const auto info = Velmora::InformationBlock::now().getBytes();
        const Sealwork::ProtectedRegion region(language, info, piece.text);
        Sealwork::EnvelopeWriter(protection.recipients, protection.method).append(output, region);
    } catch (const Brindle::Fatal& exception) {
        const auto field = exception.getField("line"); // Counted from the region's first one.
        std::size_t line = 0;
        if (std::from_chars(field.data(), field.data() + field.size(), line).ec != std::errc())
            throw;
        refuse(exception.getMessage(), Brindle::getLineNumber(text, piece.begin) + line - 1, BRINDLE_HERE);
    }
}

/// The next piece; what is wrong with the markers names the line.
std::optional<RegionWalk::Piece> takePiece(RegionWalk& walk, std::string_view text) {
    try {
        return walk.next();
    } catch (const Brindle::Fatal& exception) {
        refuse(exception.getMessage(), Brindle::getLineNumber(text, walk.getMarker()), BRINDLE_HERE);
    }
}

/// Refuses markers of the Verilog standard: who wrote them expects regions there, and would get plain text.
void requireNoForeignMarker(std::string_view text) {
    using Marker = std::pair<std::string, const char*>;
    Sealwork::BacktickLines lines(text);
    while (const auto line = lines.next()) {
        for (const auto& [name, fault] :
             {Marker{"begin", "\"`pragma protect begin\" marks no region, \"`protect begin\" does"},
              Marker{"end", "\"`pragma protect end\" marks no region, \"`protect end\" does"}})
            if (Sealwork::isDirective(line->text, name) && line->text.find("`protect " + name) == line->text.npos)
                refuse(fault, Brindle::getLineNumber(text, line->begin), BRINDLE_HERE);
    }
}

std::string protectAll(std::string_view text, const std::string& language, const Protection& protection) {
    requireNoForeignMarker(text);
    std::string output;
    Brindle::reserveMore(output, Sealwork::base64LinesSize(text.size())); // Growing takes room twice.
    bool hasRegion = false;
    RegionWalk walk(text);
    while (const auto piece = takePiece(walk, text)) {
        if (piece->isRegion)
            protectRegion(output, *piece, text, language, protection);
        else
            output += piece->text;
        hasRegion = hasRegion || piece->isRegion;
    }
    if (walk.isOpen())
        refuse("No \"`protect end\" follows", Brindle::getLineNumber(text, walk.getMarker()), BRINDLE_HERE);
    if (!hasRegion)
        throw Brindle::located(NothingToProtect("No \"`protect begin\" found, nothing is written"), BRINDLE_HERE);
    return output;
}

int run(const Brindle::CommandLine& commandLine) {
    const auto input = commandLine.getOperand("The HDL file IN");
    const auto output = commandLine.find("output").value_or(Brindle::standardStream);
    const auto language = getLanguage(commandLine, input);
    const bool replace = commandLine.has("force");
    requireWritable(output, replace);
    const auto protection = getProtection(commandLine);
    auto text = readText(input);
    if (!text.empty() && !text.ends_with('\n'))
        text += '\n';
    auto protectedText = aboutFile(input, [&] {
        const Progress progress("protecting " + input);
        return protectAll(text, language, protection);
    });
    writeText(output, std::move(protectedText), replace);
    return ExitCode::Done;
}

} // namespace

const Brindle::Command protectCommand{"protect",
                                      "protect the regions of an HDL file",
                                      help,
                                      {{"output", true, 'o'}, {"language"}, {"recipients"}, {"force", false}},
                                      run};

} // namespace SealTool
