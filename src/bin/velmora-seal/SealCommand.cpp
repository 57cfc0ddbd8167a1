#include <velmora-seal/Commands.h>

#include <Brindle/core/Exception.h>
#include <Sealwork/keys/KeyFile.h>
#include <Sealwork/script/ScriptSealer.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/Passphrase.h>
#include <velmora-seal/PrivateKeyFile.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>

#include <filesystem>
#include <optional>
#include <system_error>

namespace SealTool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view help =
    R"(Usage: velmora-seal seal IN -o OUT --key KEY [--signer SIGNER] [--passphrase-file FILE] [--force]

Seals the script IN under a script key and, with a signer, signs it. "-" stands for standard input or output.

  -o, --output OUT        Where to write the sealed script.
  --key KEY               The script key: its file, or a directory that holds one script key.
  --signer SIGNER         The private key of the signer.
  --passphrase-file FILE  Holds the signer's passphrase in its first line; otherwise it is asked for if need be.
  --force                 OUT is replaced if it exists.

Example: velmora-seal seal generate.py -o generate.sealed --key keys/scripts --signer keys/orvane.private.pem
)";

Sealwork::ScriptKey loadKey(const fs::path& path) {
    std::error_code error;
    if (!fs::is_directory(path, error))
        return Sealwork::ScriptKey::load(path);
    const auto files = Sealwork::listKeyFiles(path, ".key");
    if (files.size() != 1)
        throw Brindle::located(
            Brindle::Fatal(files.empty() ? "No script key in the directory" : "Several script keys, name one of them"),
            BRINDLE_HERE, {{"filename", path.string()}});
    return Sealwork::ScriptKey::load(files.front());
}

std::optional<Sealwork::ScriptSigner> loadSigner(const Brindle::CommandLine& commandLine) {
    const auto filename = commandLine.find("signer");
    if (!filename)
        return std::nullopt;
    auto signer =
        Sealwork::ScriptSigner::load(*filename, getPassphraseSource(commandLine.find("passphrase-file"), "the signer"));
    warnOfReaders(*filename);
    return signer;
}

int run(const Brindle::CommandLine& commandLine) {
    const auto input = commandLine.getOperand("The script IN");
    const auto output = commandLine.get("output");
    const bool replace = commandLine.has("force");
    requireWritable(output, replace);
    const auto key = loadKey(commandLine.get("key"));
    const auto signer = loadSigner(commandLine);
    const Sealwork::ScriptSealer sealer(key, signer ? &*signer : nullptr);
    const auto script = readText(input);
    writeText(output, aboutFile(input, [&] { return sealer.seal(script); }), replace);
    return ExitCode::Done;
}

} // namespace

const Brindle::Command sealCommand{"seal",
                                   "seal a script",
                                   help,
                                   {{"output", true, 'o'}, {"key"}, {"signer"}, {"passphrase-file"}, {"force", false}},
                                   run};

} // namespace SealTool
