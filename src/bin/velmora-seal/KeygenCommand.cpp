#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/tool/UsageError.h>
#include <Sealwork/base/OutputFile.h>
#include <Sealwork/keys/KeyFile.h>
#include <Sealwork/keys/Recipient.h>
#include <Sealwork/keys/ScriptKey.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/Passphrase.h>
#include <velmora-seal/Progress.h>
#include <velmora-seal/TextFile.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <optional>
#include <vector>

namespace SealTool {

namespace {

namespace fs = std::filesystem;
using Sealwork::AsymmetricKey;
using Sealwork::Recipient;

constexpr unsigned defaultBits = 3072;

constexpr std::string_view help =
    R"(Usage: velmora-seal keygen script    -o DIR  [--keep]
       velmora-seal keygen signer    -o BASE [--keep | --force] [--passphrase]
       velmora-seal keygen recipient -o BASE --owner OWNER --name NAME [--bits BITS] [--keep | --force]
                              [--passphrase]

Makes keys and prints the names of their files, missing directories included.

  script      A secret key for sealing scripts: DIR/<key id>.key, under which name it is installed in "scripts".
  signer      An Ed25519 key pair for signing sealed scripts: BASE.private.pem, and BASE.pem to install in "signers".
  recipient   An RSA key pair for protected regions: BASE.private.pem, and BASE.pem to install in "recipients".

  -o, --output    Where to write.
  --owner OWNER   Who the recipient is, as the tool expects it in key_keyowner.
  --name NAME     What the key is called, as the tool expects it in key_keyname.
  --bits BITS     Length of the RSA key, 2048 to 8192; 3072 if not given.
  --keep          Keys that exist already are printed and left as they are.
  --force         Key files that exist already are replaced.
  --passphrase    The private half is enciphered under a passphrase, which is asked for.
  --passphrase-file FILE
                  The same, with the passphrase in the first line of the file.

Script keys and private keys are readable by their owner only. An installed script
key must be readable by all who use the installation: "install -m 644".

Example: velmora-seal keygen recipient --owner Orvane --name orvane-2 -o keys/orvane-2
)";

/// Where a key pair is written.
struct PairFiles {
    explicit PairFiles(const std::string& base) : privateFile(base + ".private.pem"), publicFile(base + ".pem") {}

    void requireWritable(bool replace) const {
        SealTool::requireWritable(privateFile, replace);
        SealTool::requireWritable(publicFile, replace);
    }

    std::string privateFile;
    std::string publicFile;
};

bool exists(const std::string& filename) {
    std::error_code error;
    return fs::exists(filename, error);
}

/// The files of the key pair that is to be made. Hidden ones would be in no list of an installation's keys.
PairFiles getPairFiles(const Brindle::CommandLine& commandLine) {
    const auto base = commandLine.get("output");
    const auto name = fs::path(base).filename().string();
    if (name.empty() || name.starts_with('.'))
        throw Brindle::located(
            Brindle::UsageError("--output should end with a file name that does not begin with a dot"), BRINDLE_HERE);
    return PairFiles(base);
}

void print(const std::string& filename) {
    std::cout << filename << '\n';
}

ExitCode makeScriptKey(const Brindle::CommandLine& commandLine) {
    const fs::path directory = commandLine.get("output");
    makeDirectory(directory);
    if (commandLine.has("keep")) {
        const auto files = Sealwork::listKeyFiles(directory, ".key");
        for (const auto& file : files)
            print(file);
        if (!files.empty())
            return ExitCode::Done;
    }
    const auto key = Sealwork::ScriptKey::make();
    const auto filename = directory / key.getFileName();
    Sealwork::writeOutputFile(filename, key.getText(), Sealwork::FileAccess::Private, Sealwork::Overwrite::No);
    print(filename);
    return ExitCode::Done;
}

/// The key pair of a private half that was written before its public half could be.
AsymmetricKey loadPrivateHalf(const std::string& filename) {
    const Sealwork::PassphraseSource noPassphrase = [&filename]() -> Sealwork::SecureBuffer {
        Sealwork::refuseKeyFile(filename, "has a passphrase but no public half", BRINDLE_HERE);
    };
    auto key = AsymmetricKey::parsePrivate(Sealwork::readKeyFile(filename).text(), noPassphrase);
    if (!key)
        Sealwork::refuseKeyFile(filename, "not a private key", BRINDLE_HERE);
    return std::move(*key);
}

/// The passphrase that the private half is to have.
std::optional<Sealwork::SecureBuffer> getPassphrase(const Brindle::CommandLine& commandLine) {
    const auto file = commandLine.find("passphrase-file");
    if (!file && !commandLine.has("passphrase"))
        return std::nullopt;
    return getNewPassphrase(file);
}

/// Makes a key pair and writes both halves; `makePublicText` gives the public one.
template <typename MakeKey, typename MakePublicText>
ExitCode makePair(const Brindle::CommandLine& commandLine, MakeKey makeKey, MakePublicText makePublicText) {
    const auto files = getPairFiles(commandLine);
    const bool keep = commandLine.has("keep");
    if (keep && exists(files.privateFile)) {
        if (!exists(files.publicFile))
            writeText(files.publicFile, makePublicText(loadPrivateHalf(files.privateFile)), false);
    } else {
        const bool replace = commandLine.has("force");
        files.requireWritable(replace);
        makeDirectory(fs::path(files.privateFile).parent_path());
        const auto passphrase = getPassphrase(commandLine);
        const AsymmetricKey key = makeKey();
        const auto privatePem = passphrase ? key.getPrivatePem(*passphrase) : key.getPrivatePem();
        Sealwork::writeOutputFile(files.privateFile, privatePem, Sealwork::FileAccess::Private,
                                  replace ? Sealwork::Overwrite::Yes : Sealwork::Overwrite::No);
        writeText(files.publicFile, makePublicText(key), replace);
    }
    print(files.privateFile);
    print(files.publicFile);
    return ExitCode::Done;
}

std::string getName(const Brindle::CommandLine& commandLine, std::string_view option) {
    const auto name = commandLine.get(option);
    if (!Recipient::isName(name))
        throw Brindle::located(
            Brindle::UsageError("--" + std::string(option) +
                                " should be 1 to 128 printable ASCII characters without \", \\ and `, no "
                                "blank at either end"),
            BRINDLE_HERE);
    return name;
}

unsigned getBits(const Brindle::CommandLine& commandLine) {
    const auto text = commandLine.find("bits");
    if (!text)
        return defaultBits;
    unsigned bits = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), bits);
    const bool isNumber = error == std::errc() && end == text->data() + text->size();
    if (!isNumber || bits < Recipient::fewestBits || bits > Recipient::mostBits)
        throw Brindle::located(Brindle::UsageError("--bits should be 2048 to 8192"), BRINDLE_HERE);
    return bits;
}

ExitCode makeSigner(const Brindle::CommandLine& commandLine) {
    return makePair(commandLine, AsymmetricKey::makeEd25519,
                    [](const AsymmetricKey& key) { return key.getPublicPem(); });
}

ExitCode makeRecipient(const Brindle::CommandLine& commandLine) {
    const auto owner = getName(commandLine, "owner");
    const auto name = getName(commandLine, "name");
    const auto bits = getBits(commandLine);
    return makePair(
        commandLine,
        [bits] {
            const Progress progress("making an RSA key of " + Brindle::getLabel(bits) + " bits");
            return AsymmetricKey::makeRsa(bits);
        },
        [&](const AsymmetricKey& key) { return Recipient::format(owner, name, key); });
}

/// A kind of key that can be made.
struct Kind {
    std::string_view name;
    std::vector<std::string_view> otherOptions; ///< That other kinds have.
    ExitCode (*make)(const Brindle::CommandLine&);
};

const std::array kinds{
    Kind{"script", {"owner", "name", "bits", "force", "passphrase", "passphrase-file"}, makeScriptKey},
    Kind{"signer", {"owner", "name", "bits"}, makeSigner},
    Kind{"recipient", {}, makeRecipient},
};

int run(const Brindle::CommandLine& commandLine) {
    const auto name = commandLine.getOperand("The kind of key (script, signer or recipient)");
    const auto kind = std::ranges::find(kinds, name, &Kind::name);
    if (kind == kinds.end())
        throw Brindle::located(
            Brindle::UsageError("Unknown kind of key \"" + name + "\", expected script, signer or recipient"),
            BRINDLE_HERE);
    for (const auto option : kind->otherOptions) {
        if (commandLine.has(option))
            throw Brindle::located(
                Brindle::UsageError("--" + std::string(option) + " does not go with a " + name + " key"), BRINDLE_HERE);
    }
    if (commandLine.has("keep") && commandLine.has("force"))
        throw Brindle::located(Brindle::UsageError("--keep and --force exclude each other"), BRINDLE_HERE);
    return kind->make(commandLine);
}

} // namespace

const Brindle::Command keygenCommand{"keygen",
                                     "make a script key, a signer or a recipient",
                                     help,
                                     {{"output", true, 'o'},
                                      {"owner"},
                                      {"name"},
                                      {"bits"},
                                      {"keep", false},
                                      {"force", false},
                                      {"passphrase", false},
                                      {"passphrase-file"}},
                                     run};

} // namespace SealTool
