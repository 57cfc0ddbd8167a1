#include <velmora-generate/Commands.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/FileRun.h>
#include <velmora-generate/Output.h>
#include <velmora-generate/OutputFiles.h>

#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>

#include <optional>
#include <variant>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::Generation;

constexpr std::string_view help = R"(Usage: velmora-generate run FILE... [-o OUTPUT] [--json] [-q]

Generates from configurations what the program's window would. The output stands
beside the configuration: a file named after the entity with the extension .vhd,
or for an IP of several files a directory named after the entity. It is replaced
only when its generation succeeded. A file that fails does not stop the others.
FILE may be - for standard input.

  -o, --output OUTPUT  The output of the one FILE, or an existing directory for
                       the outputs of several.
      --json           Write one JSON text, a list with an object for each file:
                       "file", "ip", "output", "succeeded" and "messages".
  -q, --quiet          Show errors alone.

SOURCE_DATE_EPOCH, when it is set, takes the place of the time of generation:
seconds since 1970, shown in UTC.

Exit status: 0 when all files were generated, 1 when one was not, 2 for a wrong
command line.

Example: velmora-generate run filter.velmora -o rtl/filter.vhd
)";

void add(OutputFiles& output, const QString& path, const QString& text) {
    output.add(path, Velmora::HdlFile::getContent(text, path));
}

void add(OutputFiles& output, const QString& directory, const Velmora::GeneratedFiles& files) {
    Velmora::writeGeneratedFiles(
        directory, files, [&output](const QString& path, const QString& content) { add(output, path, content); });
}

/// Runs the script and writes what it returns, unless it showed an error. True when the output was written.
template <class Script>
bool generateInto(const QString& path, const Script& script) {
    const unsigned long errorCount = console.getErrorCount();
    const auto generated = script();
    if (console.getErrorCount() != errorCount)
        return false;
    OutputFiles output;
    add(output, path, generated);
    output.commit();
    return true;
}

/// One generation with the console lines of the window.
bool generate(Generation generation, const QString& filename, Output& output, FileReport& report) {
    generation.check = [&, checkForm = generation.check] {
        const bool isNamed = !output.isNamedByEntity() || !generation.entityName.isEmpty();
        if (!isNamed)
            console.error("Entity name not specified!");
        return isNamed && checkForm();
    };
    return generation.run(BRINDLE_HERE, [&] {
        const QString path = output.take(filename, generation.entityName, generation.isDirectory());
        const auto intoPath = [&](const auto& script) { return generateInto(path, script); };
        const bool isWritten = std::visit(intoPath, generation.script);
        if (isWritten)
            report.setOutput(path);
        return isWritten;
    });
}

int run(const Brindle::CommandLine& commandLine) {
    const QStringList filenames = getFilenames(commandLine);
    const auto path = commandLine.find("output");
    Output output(path ? std::optional(QString::fromStdString(*path)) : std::nullopt, filenames);
    const Catalogue catalogue;
    return runOnFiles(filenames, commandLine, [&](const QString& filename, FileReport& report) {
        const ConfiguredIP configured = loadConfigured(catalogue, filename);
        report.setIP(configured.ip.description);
        return generate(configured.leaf->getGeneration(), filename, output, report);
    });
}

std::vector<Brindle::Option> getOptions() {
    auto options = getFileOptions();
    options.push_back({"output", true, 'o'});
    return options;
}

} // namespace

const Brindle::Command runCommand{"run", "generate from configurations", help, getOptions(), run};

} // namespace GenerateTool
