#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>
#include <Brindle/files/DirectoryLock.h>
#include <Brindle/files/OutputFiles.h>
#include <Brindle/tool/UsageError.h>
#include <Sealwork/keys/KeyFile.h>
#include <Sealwork/keys/Recipient.h>
#include <Sealwork/keys/ScriptKey.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/Passphrase.h>
#include <velmora-seal/PrivateKeyFile.h>
#include <velmora-seal/Progress.h>
#include <velmora-seal/TextFile.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <functional>
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
       velmora-seal keygen signer    -o BASE [--keep | --force] [--passphrase | --passphrase-file FILE]
       velmora-seal keygen recipient -o BASE --owner OWNER --name NAME [--bits BITS] [--keep | --force]
                                     [--passphrase | --passphrase-file FILE]

Makes keys and prints the names of their files, missing directories included.

  script      A secret key for sealing scripts: DIR/<key id>.key, under which name it is installed in "scripts".
  signer      An Ed25519 key pair for signing sealed scripts: BASE.private.pem, and BASE.pem to install in "signers".
  recipient   An RSA key pair for protected regions: BASE.private.pem, and BASE.pem to install in "recipients".

  -o, --output    Where to write.
  --owner OWNER   Who the recipient is, as the tool expects it in key_keyowner.
  --name NAME     What the key is called, as the tool expects it in key_keyname.
  --bits BITS     Length of the RSA key, 2048 to 8192; 3072 if not given.
  --keep          Keys that exist already are printed and left as they are, once they are found to be what would be
                  made: their kind, their owner and name, and halves that fit. A public half that is missing is added.
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

/// A kind of key pair, and how one of it is made.
struct PairKind {
    std::string_view name;
    const char* algorithm = "";                  ///< As the cryptography library names it.
    const char* privateFault = "";               ///< Why a file is not such a private half.
    const char* publicFault = "";                ///< What else may be wrong with a public half.
    std::optional<unsigned> bits = std::nullopt; ///< That a kept key must have.
    std::function<AsymmetricKey()> make;
    std::function<std::string(const AsymmetricKey&)> getPublicText;
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

int makeScriptKey(const Brindle::CommandLine& commandLine) {
    const fs::path directory = commandLine.get("output");
    makeDirectory(directory);
    const Brindle::DirectoryLock lock(directory);
    if (commandLine.has("keep")) {
        const auto files = Sealwork::listKeyFiles(directory, ".key");
        std::ranges::for_each(files, Sealwork::ScriptKey::load);
        std::ranges::for_each(files, print);
        if (!files.empty())
            return ExitCode::Done;
    }
    const auto key = Sealwork::ScriptKey::make();
    const auto filename = directory / key.getFileName();
    Brindle::OutputFiles output(BRINDLE_HERE);
    output.addPrivate(filename, key.getText(), Brindle::Overwrite::No);
    output.commit();
    print(filename);
    return ExitCode::Done;
}

bool isWithPassphrase(const Brindle::CommandLine& commandLine) {
    return commandLine.has("passphrase") || commandLine.has("passphrase-file");
}

/// The private half of a key pair that is kept.
AsymmetricKey loadPrivateHalf(const std::string& filename, const PairKind& kind,
                              const Brindle::CommandLine& commandLine) {
    const auto ask = getPassphraseSource(commandLine.find("passphrase-file"), std::string("the ").append(kind.name));
    bool isEnciphered = false;
    auto key = AsymmetricKey::parsePrivate(Sealwork::readKeyFile(filename).text(), [&] {
        isEnciphered = true;
        return ask();
    });
    if (!key || !key->isOfType(kind.algorithm))
        Sealwork::refuseKeyFile(filename, kind.privateFault, BRINDLE_HERE);
    if (kind.bits && key->getBits() != *kind.bits)
        Sealwork::refuseKeyFile(filename, "not of " + Brindle::getLabel(*kind.bits) + " bits", BRINDLE_HERE);
    if (isWithPassphrase(commandLine) && !isEnciphered)
        Sealwork::refuseKeyFile(filename, "has no passphrase", BRINDLE_HERE);
    return std::move(*key);
}

/// Sees that the key pair is what would be made, and adds a public half that is missing.
void keepPair(const PairFiles& files, const PairKind& kind, const Brindle::CommandLine& commandLine) {
    const auto publicText = kind.getPublicText(loadPrivateHalf(files.privateFile, kind, commandLine));
    if (!exists(files.publicFile))
        writeText(files.publicFile, publicText, false);
    else if (Brindle::withLineFeeds(Sealwork::readKeyFile(files.publicFile).text()) != publicText)
        Sealwork::refuseKeyFile(files.publicFile, "not the public half of " + files.privateFile + kind.publicFault,
                                BRINDLE_HERE);
    warnOfReaders(files.privateFile);
}

/// Makes a key pair and writes both halves.
void writePair(const PairFiles& files, const PairKind& kind, const std::optional<Sealwork::SecureBuffer>& passphrase,
               Brindle::Overwrite overwrite) {
    const AsymmetricKey key = kind.make();
    const auto privatePem = passphrase ? key.getPrivatePem(*passphrase) : key.getPrivatePem();
    Brindle::OutputFiles output(BRINDLE_HERE);
    output.addPrivate(files.privateFile, privatePem, overwrite);
    output.add(files.publicFile, kind.getPublicText(key), overwrite);
    output.commit();
}

int makePair(const PairKind& kind, const Brindle::CommandLine& commandLine) {
    const auto files = getPairFiles(commandLine);
    const auto directory = fs::path(files.privateFile).parent_path();
    const auto isKept = [&] { return commandLine.has("keep") && exists(files.privateFile); };
    const bool replace = commandLine.has("force");
    std::optional<Sealwork::SecureBuffer> passphrase;
    if (!isKept()) {
        files.requireWritable(replace);
        makeDirectory(directory);
        if (isWithPassphrase(commandLine))
            passphrase = getNewPassphrase(commandLine.find("passphrase-file"));
    }
    // Of several that make one pair at a time, one makes both halves that stay.
    const Brindle::DirectoryLock lock(directory);
    if (isKept())
        keepPair(files, kind, commandLine);
    else
        writePair(files, kind, passphrase, replace ? Brindle::Overwrite::Yes : Brindle::Overwrite::No);
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

/// The length that is asked for.
std::optional<unsigned> getBits(const Brindle::CommandLine& commandLine) {
    const auto text = commandLine.find("bits");
    if (!text)
        return std::nullopt;
    unsigned bits = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), bits);
    const bool isNumber = error == std::errc() && end == text->data() + text->size();
    if (!isNumber || bits < Recipient::fewestBits || bits > Recipient::mostBits)
        throw Brindle::located(Brindle::UsageError("--bits should be 2048 to 8192"), BRINDLE_HERE);
    return bits;
}

int makeSigner(const Brindle::CommandLine& commandLine) {
    return makePair({.name = "signer",
                     .algorithm = "ED25519",
                     .privateFault = "not an Ed25519 private key, or not its passphrase",
                     .make = AsymmetricKey::makeEd25519,
                     .getPublicText = &AsymmetricKey::getPublicPem},
                    commandLine);
}

int makeRecipient(const Brindle::CommandLine& commandLine) {
    const auto owner = getName(commandLine, "owner");
    const auto name = getName(commandLine, "name");
    const auto bits = getBits(commandLine);
    return makePair({.name = "recipient",
                     .algorithm = "RSA",
                     .privateFault = "not an RSA private key, or not its passphrase",
                     .publicFault = " under that owner and name",
                     .bits = bits,
                     .make =
                         [bits] {
                             const unsigned length = bits.value_or(defaultBits);
                             const Progress progress("making an RSA key of " + Brindle::getLabel(length) + " bits");
                             return AsymmetricKey::makeRsa(length);
                         },
                     .getPublicText = [&](const AsymmetricKey& key) { return Recipient::format(owner, name, key); }},
                    commandLine);
}

/// A kind of key that can be made.
struct Kind {
    std::string_view name;
    std::vector<std::string_view> otherOptions; ///< That other kinds have.
    int (*make)(const Brindle::CommandLine&);
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
