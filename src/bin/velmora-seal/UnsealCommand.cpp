#include <velmora-seal/Commands.h>

#include <Brindle/files/InputFile.h>
#include <Brindle/tool/UsageError.h>
#include <Sealwork/keys/KeyDirectory.h>
#include <Sealwork/script/ScriptContainer.h>
#include <Sealwork/script/ScriptOpener.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>

#include <iostream>

namespace SealTool {

namespace {

constexpr std::string_view help =
    R"(Usage: velmora-seal unseal IN [-o OUT] [--force]
       velmora-seal unseal IN --verify

Opens the sealed script IN as the program would, with the keys and the signers of the installation: those in the
directory that VELMORA_SEAL_DIR names, otherwise in etc/velmora/seal below ORVANE_PREFIX. "-" stands for standard
input or output.

  -o, --output OUT  Where to write the script; standard output if not given.
  --verify          Nothing is written but whether the script would be accepted, and what that proves.
  --force           OUT is replaced if it exists.

Example: velmora-seal unseal share/velmora/Orvane/scope/generator.py --verify
)";

void tellVerified(const std::string& input, const Sealwork::ScriptContainer& container,
                  const Sealwork::SignerKeys& signers) {
    std::cout << input << ": ";
    if (signers.isEmpty())
        std::cout << "not damaged; no signer is installed, so who made it cannot be told\n";
    else
        std::cout << "unaltered, signed by " << *container.signerId << '\n';
}

int run(const Brindle::CommandLine& commandLine) {
    const auto input = commandLine.getOperand("The sealed script IN");
    const bool onlyVerify = commandLine.has("verify");
    if (onlyVerify && commandLine.has("output"))
        throw Brindle::located(Brindle::UsageError("--verify and --output exclude each other"), BRINDLE_HERE);
    const auto output = commandLine.find("output").value_or(Brindle::standardStream);
    const bool replace = commandLine.has("force");
    if (!onlyVerify)
        requireWritable(output, replace);
    const auto directory = Sealwork::KeyDirectory::locate();
    const auto keys = Sealwork::ScriptKeys::load(directory.getScripts());
    const auto signers = Sealwork::SignerKeys::load(directory.getSigners());
    const auto sealed = readText(input);
    auto script = aboutFile(input, [&] { return Sealwork::ScriptOpener(keys, signers).open(sealed); });
    if (onlyVerify)
        tellVerified(input, Sealwork::ScriptContainer::parse(sealed), signers);
    else
        writeText(output, std::move(script), replace);
    return ExitCode::Done;
}

} // namespace

const Brindle::Command unsealCommand{
    "unseal", "open a sealed script", help, {{"output", true, 'o'}, {"verify", false}, {"force", false}}, run};

} // namespace SealTool
