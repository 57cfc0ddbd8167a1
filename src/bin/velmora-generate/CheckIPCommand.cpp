#include <velmora-generate/Commands.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/FileRun.h>
#include <velmora-generate/GenerationRun.h>
#include <velmora-generate/PageCheck.h>
#include <velmora-generate/PlainScript.h>

#include <velmora/catalogue/DescriptionFile.h>
#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/files/OutputFiles.h>

#include <QFileInfo>

#include <cstdlib>
#include <optional>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::IPLeaf;

constexpr std::string_view help = R"(Usage: velmora-generate check-ip FOLDER [--run FILE] [--support FOLDER]
           [--join FILE] [--json] [-q]

Tells what is wrong with an IP in an author's folder, whose script is not sealed:
with its description file (config), page, script and form. Templates in the
folder 'templates' beside the script are its dictionary TEMPLATES. IPs of an
installation are not looked at: their scripts are sealed.

      --run FILE        Generate from the configuration with the plain script,
                        and write the test bench, if the script has one, both
                        beside the configuration.
      --support FOLDER  Put the Python files of the folder before the script;
                        templates in its folder 'templates' are the dictionary
                        SHARED_TEMPLATES.
      --join FILE       Write script and templates as the one text that is to be
                        sealed.
      --json            Write one JSON text, a list with an object: "file", "ip",
                        "output", "succeeded" and "messages".
  -q, --quiet           Show errors and remarks alone, on standard error.

Exit status: 0 when all is good, 1 when something is wrong, 2 for a wrong
command line.

Example: velmora-generate check-ip ticker --run ticker/example.velmora
)";

[[noreturn]] void refuse(const std::string& message) {
    throw Brindle::located(Brindle::Critical(message), BRINDLE_HERE);
}

bool isInstalled(const QString& folder) {
    const char* const prefix = std::getenv("ORVANE_PREFIX");
    const QString catalogue =
        prefix ? QFileInfo(QString::fromUtf8(prefix) + "/share/velmora").canonicalFilePath() : QString();
    return !catalogue.isEmpty() && (QFileInfo(folder).canonicalFilePath() + "/").startsWith(catalogue + "/");
}

/// An IP that is being written.
class AuthoredIP {
public:
    AuthoredIP(const QString& folder, const std::optional<QString>& supportFolder)
        : _descriptionFilename((folder + "/config").toStdString()),
          _description(Velmora::readDescriptionFile(_descriptionFilename)),
          _supportFolder(supportFolder) {}

    const Velmora::IPDescription& getDescription() const { return _description; }
    const std::string& getScript() const { return _script; }
    IPLeaf& getPage() const { return *_page; }

    /// Each part by itself, so that one call tells of all. False when an error was told.
    bool check() {
        const unsigned long errorCount = console.getErrorCount();
        if (_description.htmlFilename.empty())
            console.remark("The IP has no page");
        else
            checkPage(_description.htmlFilename);
        telling([this] { checkScript(); });
        telling([this] { checkForm(); });
        return console.getErrorCount() == errorCount;
    }

private:
    template <class Work>
    static void telling(Work work) {
        try {
            work();
        } catch (const Brindle::Exception& exception) {
            console.error(exception);
        }
    }

    void checkScript() {
        if (_description.scriptFilename.empty()) {
            console.remark("The IP has no script");
            return;
        }
        _script = joinScript(_description.scriptFilename, _supportFolder);
        Brindle::locatedAt(BRINDLE_HERE, [this] { Velmora::GeneratorScript::fromPlain(_script).requireGenerate(); });
    }

    void checkForm() {
        _page = std::make_unique<IPLeaf>(_descriptionFilename, IPLeaf::Content::FormOnly);
        _page->setScript(Velmora::GeneratorScript::fromPlain(_script));
        if (!_page->getForm())
            console.remark("The IP has no form.json, it shows its page alone");
    }

    const std::string _descriptionFilename;
    const Velmora::IPDescription _description;
    const std::optional<QString> _supportFolder;
    std::string _script;
    std::unique_ptr<IPLeaf> _page;
};

void writeBench(const IPLeaf& page, const QString& configuration, Output& output) {
    const Velmora::Generation generation = page.getGeneration();
    const auto text = page.getScript().makeTestBench(generation.getArguments());
    if (!text)
        return;
    const QString name = generation.entityName + "_tb";
    const QString path = output.take(configuration, name, false);
    Brindle::OutputFiles files(BRINDLE_HERE);
    output.add(files, path, Velmora::HdlFile::getContent(*text, name + ".vhd"));
    files.commit();
    console.print("Test bench written to %", path.toStdString());
}

bool generateFrom(const QString& configuration, IPLeaf& page, FileReport& report) {
    if (!page.getForm())
        refuse("The IP has no form, it cannot be generated");
    page.setConfiguration(readConfiguration(configuration));
    Output output(std::nullopt, {configuration}, false);
    const Velmora::Generation generation = page.getGeneration();
    const unsigned long errorCount = console.getErrorCount();
    return generate(generation, configuration, output, report) && generation.runGuarded(BRINDLE_HERE, [&] {
        page.getScript().describe(generation.getArguments());
        writeBench(page, configuration, output);
        return console.getErrorCount() == errorCount;
    });
}

void writeScript(const std::string& filename, const std::string& script) {
    Brindle::OutputFiles files(BRINDLE_HERE);
    files.add(filename, script);
    files.commit();
}

bool checkIP(const QString& folder, const Brindle::CommandLine& commandLine, FileReport& report) {
    const auto getPath = [&commandLine](std::string_view option) {
        const auto path = commandLine.find(option);
        return path ? std::optional(QString::fromStdString(*path)) : std::nullopt;
    };
    if (isInstalled(folder))
        refuse("The IP is part of an installation, whose scripts are sealed; check the folder that it was made from");
    AuthoredIP ip(folder, getPath("support"));
    report.setIP(ip.getDescription());
    bool isGood = ip.check();
    if (const auto script = commandLine.find("join"); script && isGood)
        writeScript(*script, ip.getScript());
    if (const auto configuration = getPath("run"); configuration && isGood)
        isGood = generateFrom(*configuration, ip.getPage(), report);
    console.print(isGood ? "Check done" : "Check failed");
    return isGood;
}

int run(const Brindle::CommandLine& commandLine) {
    const QString folder = QString::fromStdString(commandLine.getOperand("The folder of the IP"));
    return runOnFiles({folder}, commandLine, [&commandLine](const QString& name, FileReport& report) {
        return checkIP(name, commandLine, report);
    });
}

std::vector<Brindle::Option> getOptions() {
    auto options = getFileOptions();
    for (const char* name : {"run", "support", "join"})
        options.push_back({name});
    return options;
}

} // namespace

const Brindle::Command checkIPCommand{"check-ip", "tell what is wrong with an IP that is being written", help,
                                      getOptions(), run};

} // namespace GenerateTool
