#include <velmora-generate/Commands.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/FileRun.h>
#include <velmora-generate/Output.h>

#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/files/DirectoryLock.h>
#include <Brindle/files/OutputFiles.h>

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
only when its generation succeeded, all files of an IP together. A file that
fails does not stop the others. FILE may be a pipe, or - for standard input; the
output then stands in the current directory.

  -o, --output OUTPUT  The output of the one FILE, or a directory that exists,
                       for the outputs of all. A pipe, a device or a descriptor
                       such as /dev/fd/3 is written to, - is standard output;
                       messages then go to standard error.
      --json           Write one JSON text, a list with an object for each file:
                       "file", "ip", "output", "succeeded" and "messages".
  -q, --quiet          Show errors and remarks alone, on standard error.

SOURCE_DATE_EPOCH, when it is set, takes the place of the time of generation:
seconds since 1970, shown in UTC.

Exit status: 0 when all files were generated, 1 when one was not, 2 for a wrong
command line.

Example: velmora-generate run filter.velmora -o rtl/filter.vhd
)";

/// False when there was nothing to write.
bool write(const Output& output, const QString& path, const QString& text) {
    Brindle::OutputFiles files(BRINDLE_HERE);
    output.add(files, path, Velmora::HdlFile::getContent(text, path));
    files.commit();
    return true;
}

bool write(const Output& output, const QString& directory, const Velmora::GeneratedFiles& generated) {
    if (generated.empty()) {
        console.remark("The script returned no file, nothing is written");
        return false;
    }
    Brindle::OutputFiles files(BRINDLE_HERE);
    Velmora::writeGeneratedFiles(directory, generated, [&](const QString& path, const QString& content) {
        output.add(files, path, Velmora::HdlFile::getContent(content, path));
    });
    // Two runs at once must not leave files of both.
    const Brindle::DirectoryLock lock(directory.toStdString());
    files.commit();
    return true;
}

/// Runs the script and writes what it returns, unless it showed an error. True when it showed none.
template <class Script>
bool generateInto(const Output& output, const QString& path, const Script& script, FileReport& report) {
    const unsigned long errorCount = console.getErrorCount();
    const auto generated = script();
    if (console.getErrorCount() != errorCount)
        return false;
    if (write(output, path, generated))
        report.setOutput(path);
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
        const auto intoPath = [&](const auto& script) { return generateInto(output, path, script, report); };
        return std::visit(intoPath, generation.script);
    });
}

int run(const Brindle::CommandLine& commandLine) {
    const QStringList filenames = getFilenames(commandLine);
    const auto path = commandLine.find("output");
    Output output(path ? std::optional(QString::fromStdString(*path)) : std::nullopt, filenames,
                  commandLine.has("json"));
    const Catalogue catalogue;
    const auto handle = [&](const QString& filename, FileReport& report) {
        const ConfiguredIP configured = loadConfigured(catalogue, filename);
        report.setIP(configured.ip.description);
        return generate(configured.leaf->getGeneration(), filename, output, report);
    };
    return runOnFilesApart(filenames, commandLine, handle,
                           [&output](const QString& written) { output.setTaken(written); });
}

std::vector<Brindle::Option> getOptions() {
    auto options = getFileOptions();
    options.push_back({"output", true, 'o'});
    return options;
}

} // namespace

const Brindle::Command runCommand{"run", "generate from configurations", help, getOptions(), run};

} // namespace GenerateTool
