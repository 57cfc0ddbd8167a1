#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>
#include <Brindle/files/InputFile.h>
#include <Brindle/tool/UsageError.h>
#include <Sealwork/envelope/EnvelopeWriter.h>
#include <Sealwork/envelope/HdlLanguage.h>
#include <Sealwork/envelope/SealConfiguration.h>
#include <Sealwork/keys/KeyDirectory.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/MalformedInput.h>
#include <velmora-seal/Progress.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>
#include <velmora/rules/InformationBlock.h>
#include <velmora/rules/ProtectedRegions.h>

#include <charconv>

namespace SealTool {

namespace {

using Velmora::RegionWalk;

constexpr std::string_view help =
    R"(Usage: velmora-seal protect IN [-o OUT] [--language auto|vhdl|vlog] [--recipients DIR] [--force]

Writes the HDL file IN with an envelope in the place of every region: the lines between one that holds "`protect begin"
and the next one that holds "`protect end", in both languages. The lines of the markers are dropped, the others stay as
they are. "-" stands for standard input or output.

  -o, --output OUT     Where to write; standard output if not given.
  --language LANGUAGE  "vhdl" or "vlog" (Verilog); "auto", the default, takes a file whose name ends with ".v" or ".vh"
                       for Verilog and any other for VHDL.
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

std::string getLanguage(const Brindle::CommandLine& commandLine, const std::string& input) {
    auto language = commandLine.find("language").value_or("auto");
    if (language == Sealwork::vhdlLanguage || language == Sealwork::verilogLanguage)
        return language;
    if (language != "auto")
        throw Brindle::located(Brindle::UsageError("--language should be auto, vhdl or vlog"), BRINDLE_HERE);
    if (input == Brindle::standardStream)
        throw Brindle::located(Brindle::UsageError("Standard input has no name to tell its language, give --language"),
                               BRINDLE_HERE);
    return Velmora::getLanguage(input);
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

std::string protectAll(std::string_view text, const std::string& language, const Protection& protection,
                       const std::string& input) {
    std::string output;
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
        showProblem(input + ": warning: no \"`protect begin\" found, nothing is protected");
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
        return protectAll(text, language, protection, input);
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
