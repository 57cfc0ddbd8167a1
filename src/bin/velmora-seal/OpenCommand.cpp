#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/files/InputFile.h>
#include <Sealwork/envelope/EnvelopeOpener.h>
#include <Sealwork/envelope/EnvelopeReading.h>
#include <Sealwork/envelope/EnvelopeRefused.h>
#include <Sealwork/envelope/HdlPieces.h>
#include <Sealwork/script/ScriptContainer.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/NothingToOpen.h>
#include <velmora-seal/Passphrase.h>
#include <velmora-seal/PrivateKeyFile.h>
#include <velmora-seal/Progress.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>

#include <algorithm>

namespace SealTool {

namespace {

using Sealwork::EnvelopeReading;
using Sealwork::HdlPiece;

constexpr std::string_view help =
    R"(Usage: velmora-seal open IN --key KEY [-o OUT] [--lax] [--passphrase-file FILE] [--force]

Writes the HDL file IN with the plain text of its regions in the place of their envelopes. "-" stands for standard
input or output. Either all envelopes are opened or nothing is written.

  --key KEY               The private RSA key of one of the recipients.
  -o, --output OUT        Where to write; standard output if not given.
  --lax                   Envelopes of other tools are read too: free spacing and case, lines that end with CR LF,
                          the layout of version 2, whose rights are passed over. They carry no authentication code:
                          whether they have been altered cannot be told.
  --passphrase-file FILE  Holds the key's passphrase in its first line; otherwise it is asked for if need be.
  --force                 OUT is replaced if it exists.

Example: velmora-seal open top.vhd --key keys/orvane-2.private.pem -o top-plain.vhd
)";

void requireEnvelope(const std::vector<HdlPiece>& pieces, std::string_view text) {
    if (std::ranges::any_of(pieces, &HdlPiece::isEnvelope))
        return;
    throw Brindle::located(NothingToOpen(Sealwork::ScriptContainer::isSealed(text)
                                             ? "Nothing to open: a sealed script, which unseal opens"
                                             : "Nothing to open: no protected envelope"),
                           BRINDLE_HERE);
}

Sealwork::Envelope readPiece(const HdlPiece& piece, EnvelopeReading reading) {
    try {
        return Sealwork::readEnvelope(piece.text, reading, piece.line);
    } catch (Sealwork::EnvelopeRefused& refusal) {
        if (reading == EnvelopeReading::Strict)
            refusal.addField("reason", "--lax reads envelopes of other tools");
        throw;
    }
}

Sealwork::SecureBuffer openPiece(const HdlPiece& piece, const Sealwork::EnvelopeKey& key, EnvelopeReading reading,
                                 const std::string& input) {
    const auto envelope = readPiece(piece, reading);
    const auto line = Brindle::getLabel(piece.line);
    try {
        auto text = Sealwork::EnvelopeOpener(key).open(envelope);
        if (!envelope.getSeal())
            showProblem(input + ":" + line +
                        ": warning: no authentication code, whether this envelope was altered cannot be told");
        return text;
    } catch (Sealwork::EnvelopeRefused& refusal) {
        refusal.addField("line", line);
        throw;
    }
}

std::string openAll(std::string_view text, const Sealwork::EnvelopeKey& key, EnvelopeReading reading,
                    const std::string& input) {
    const auto pieces = Sealwork::splitAtEnvelopes(text);
    requireEnvelope(pieces, text);
    std::string opened;
    opened.reserve(text.size());
    for (const auto& piece : pieces) {
        if (piece.isEnvelope)
            opened += openPiece(piece, key, reading, input).text();
        else
            opened += piece.text;
    }
    return opened;
}

int run(const Brindle::CommandLine& commandLine) {
    const auto input = commandLine.getOperand("The HDL file IN");
    const auto output = commandLine.find("output").value_or(Brindle::standardStream);
    const bool replace = commandLine.has("force");
    requireWritable(output, replace);
    const auto keyFile = commandLine.get("key");
    const auto key =
        Sealwork::EnvelopeKey::load(keyFile, getPassphraseSource(commandLine.find("passphrase-file"), "the recipient"));
    warnOfReaders(keyFile);
    const auto reading = commandLine.has("lax") ? EnvelopeReading::Lax : EnvelopeReading::Strict;
    const auto text = readText(input);
    auto opened = aboutFile(input, [&] {
        const Progress progress("opening " + input);
        return openAll(text, key, reading, input);
    });
    writeText(output, std::move(opened), replace);
    return ExitCode::Done;
}

} // namespace

const Brindle::Command openCommand{
    "open",
    "open the envelopes of an HDL file",
    help,
    {{"output", true, 'o'}, {"key"}, {"lax", false}, {"passphrase-file"}, {"force", false}},
    run};

} // namespace SealTool
