#include <velmora-seal/Commands.h>

#include <Brindle/core/Label.h>
#include <Brindle/files/DirectoryLock.h>
#include <Brindle/tool/UsageError.h>
#include <Sealwork/envelope/PublishedKey.h>
#include <Sealwork/keys/KeyDirectory.h>
#include <Sealwork/keys/KeyFile.h>
#include <Sealwork/keys/RecipientKeys.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/MalformedInput.h>
#include <velmora-seal/Report.h>
#include <velmora-seal/TextFile.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>

namespace SealTool {

namespace {

namespace fs = std::filesystem;
using Sealwork::Recipient;
using Sealwork::RecipientKeys;

constexpr std::string_view help =
    R"(Usage: velmora-seal recipients list  [--recipients DIR]
       velmora-seal recipients check [--recipients DIR]
       velmora-seal recipients add FILE [--owner OWNER] [--name NAME] [--recipients DIR] [--force]

Shows, checks and adds those who can open what is protected here. Whoever is among them can read everything, and one
key that is not fit for use stops every protection.

  list    Prints one line for each: file, owner / name, length of the RSA key.
  check   Names every file that is not fit for use, or could be changed by others.
  add     Adds the public key in FILE, as the maker of a tool hands it out: a PEM public key, or HDL directives with
          key_public_key. It is written to DIR as NAME.pem, or NAME-2.pem and so on where another is called so.

  --owner OWNER     What key_keyowner is to say, if FILE does not tell; taken over as the tool expects it.
  --name NAME       The same for key_keyname.
  --recipients DIR  Where the keys lie. If not given: "recipients" in the directory that VELMORA_SEAL_DIR names,
                    otherwise in etc/velmora/seal below ORVANE_PREFIX.
  --force           The file of that owner and name is replaced.

Example: velmora-seal recipients add tool_2026.pem --owner "Tool Maker" --name tool_2026
)";

fs::path getDirectory(const Brindle::CommandLine& commandLine) {
    if (const auto directory = commandLine.find("recipients"))
        return *directory;
    return Sealwork::KeyDirectory::locate().getRecipients();
}

Recipient readRecipient(const fs::path& filename) {
    return Recipient::parse(Sealwork::readKeyFile(filename).text(), filename);
}

void warnOfWriters(const fs::path& filename) {
    const auto writers = fs::perms::group_write | fs::perms::others_write;
    std::error_code error;
    if ((fs::status(filename, error).permissions() & writers) != fs::perms::none)
        showProblem(filename.string() +
                    ": warning: others can change this, and whoever does can read what is protected");
}

/// What a directory of recipients holds.
struct Inspection {
    std::vector<fs::path> files; ///< Of the recipients that are fit for use, in their order.
    RecipientKeys keys;          ///< Those recipients.
    bool hasFault = false;       ///< There are others, whose faults have been shown.
};

Inspection inspect(const fs::path& directory) {
    Inspection inspection;
    for (const auto& filename : Sealwork::listKeyFiles(directory, ".pem")) {
        try {
            inspection.keys.add(readRecipient(filename), filename);
            inspection.files.push_back(filename);
        } catch (const Brindle::Exception& exception) {
            showProblem(getReport(exception));
            inspection.hasFault = true;
        }
    }
    return inspection;
}

int list(const Brindle::CommandLine& commandLine) {
    const auto inspection = inspect(getDirectory(commandLine));
    for (std::size_t index = 0; index < inspection.files.size(); ++index) {
        const auto& recipient = inspection.keys.getRecipients()[index];
        std::cout << inspection.files[index].string() << ": " << recipient.getOwner() << " / " << recipient.getName()
                  << ", " << recipient.getBits() << " bits\n";
    }
    return inspection.hasFault ? ExitCode::UsageOrFile : ExitCode::Done;
}

int check(const Brindle::CommandLine& commandLine) {
    const auto directory = getDirectory(commandLine);
    const auto inspection = inspect(directory);
    warnOfWriters(directory);
    std::ranges::for_each(inspection.files, warnOfWriters);
    if (inspection.hasFault)
        return ExitCode::UsageOrFile;
    if (inspection.files.empty())
        throw Brindle::located(Brindle::Fatal("No recipient key installed"), BRINDLE_HERE,
                               {{"directory", directory.string()}});
    const auto count = inspection.files.size();
    std::cout << Brindle::getLabel(count) << (count == 1 ? " recipient, fit for use\n" : " recipients, fit for use\n");
    return ExitCode::Done;
}

/// The option's value, otherwise what the file tells.
std::string getName(const Brindle::CommandLine& commandLine, const char* option, const std::string& told) {
    const auto name = commandLine.find(option).value_or(told);
    if (name.empty())
        throw Brindle::located(
            Brindle::UsageError("The file does not tell the " + std::string(option) + ", give --" + option),
            BRINDLE_HERE);
    return name;
}

/// The name as a file's without its ending: what is not a letter, digit, ".", "_" or "-" becomes "_".
std::string getFileStem(std::string name) {
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-';
    };
    std::ranges::replace_if(name, std::not_fn(isPlain), '_');
    if (name.starts_with('.'))
        name.front() = '_'; // A hidden file would not be read.
    return name;
}

/// The file of the recipient: the one that holds him already, otherwise one that is free.
fs::path findTarget(const Recipient& recipient, const fs::path& directory) {
    const auto isSame = [&recipient](const fs::path& filename) {
        const auto present = readRecipient(filename);
        return present.getOwner() == recipient.getOwner() && present.getName() == recipient.getName();
    };
    const auto files = Sealwork::listKeyFiles(directory, ".pem");
    if (const auto file = std::ranges::find_if(files, isSame); file != files.end())
        return *file;
    const auto stem = getFileStem(recipient.getName());
    auto target = directory / (stem + ".pem");
    for (int number = 2; fs::exists(fs::symlink_status(target)); ++number)
        target = directory / (stem + "-" + Brindle::getLabel(number) + ".pem");
    return target;
}

int add(const Brindle::CommandLine& commandLine, const std::string& input) {
    const auto text = readText(input);
    const auto published = Sealwork::PublishedKey::parse(text);
    if (!published)
        throw Brindle::located(MalformedInput("Not one public key, in PEM or in a key_public_key block"), BRINDLE_HERE,
                               {{"filename", input}});
    const auto owner = getName(commandLine, "owner", published->owner);
    const auto name = getName(commandLine, "name", published->name);
    const auto content = Recipient::format(owner, name, published->key);
    const auto recipient = Recipient::parse(content, input);
    const auto directory = getDirectory(commandLine);
    makeDirectory(directory);
    const Brindle::DirectoryLock lock(directory);
    const auto target = findTarget(recipient, directory);
    const bool replace = commandLine.has("force");
    requireWritable(target, replace);
    writeText(target, content, replace);
    std::cout << target.string() << '\n';
    return ExitCode::Done;
}

int run(const Brindle::CommandLine& commandLine) {
    const auto& operands = commandLine.getOperands();
    const std::string action = operands.empty() ? "" : operands.front();
    if (action == "add" && operands.size() == 2)
        return add(commandLine, operands[1]);
    if ((action != "list" && action != "check") || operands.size() != 1)
        throw Brindle::located(Brindle::UsageError("Expected recipients list, recipients check or recipients add FILE"),
                               BRINDLE_HERE);
    for (const std::string option : {"owner", "name", "force"})
        if (commandLine.has(option))
            throw Brindle::located(
                Brindle::UsageError(
                    std::string("--").append(option).append(" does not go with recipients ").append(action)),
                BRINDLE_HERE);
    return action == "list" ? list(commandLine) : check(commandLine);
}

} // namespace

const Brindle::Command recipientsCommand{"recipients",
                                         "list, add or check those who can open what is protected",
                                         help,
                                         {{"recipients"}, {"owner"}, {"name"}, {"force", false}},
                                         run};

} // namespace SealTool
