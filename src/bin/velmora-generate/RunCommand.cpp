#include <velmora-generate/Commands.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/FileRun.h>
#include <velmora-generate/GenerationRun.h>
#include <velmora-generate/Output.h>

#include <optional>

namespace GenerateTool {

namespace {

constexpr std::string_view help = R"(Usage: velmora-generate run FILE... [-o OUTPUT] [-j N] [--json] [-q]

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
  -j, --jobs N         Handle up to N files at a time, 1 unless given. What is
                       written and told does not depend on it.
      --json           Write one JSON text, a list with an object for each file:
                       "file", "ip", "output", "succeeded" and "messages".
  -q, --quiet          Show errors and remarks alone, on standard error.

SOURCE_DATE_EPOCH, when it is set, takes the place of the time of generation:
seconds since 1970, shown in UTC.

Exit status: 0 when all files were generated, 1 when one was not, 2 for a wrong
command line.

Example: velmora-generate run filter.velmora -o rtl/filter.vhd
)";

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
    return runOnFilesApart(filenames, commandLine, handle, output);
}

} // namespace

const Brindle::Command runCommand{"run", "generate from configurations", help, getWritingOptions(), run};

} // namespace GenerateTool
