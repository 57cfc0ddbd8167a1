#include <velmora-generate/Commands.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/FileRun.h>

#include <Brindle/core/Console.h>

namespace GenerateTool {

namespace {

constexpr std::string_view help = R"(Usage: velmora-generate check FILE... [--json] [-q]

Checks configurations as the forms of their IPs do before a generation. Of
scripts only the function 'check' is run, of an IP that describes its form; the
rest may refuse more, and an IP that takes its output's name from --output may
still be without an entity name. FILE may be a pipe, or -
for standard input.

      --json   Write one JSON text, a list with an object for each file: "file",
               "ip", "succeeded" and "messages".
  -q, --quiet  Show errors and remarks alone, on standard error.

FILE may be - for standard input.

Exit status: 0 when all files are good, 1 when one is not, 2 for a wrong command
line.

Example: velmora-generate check *.velmora
)";

int run(const Brindle::CommandLine& commandLine) {
    const QStringList filenames = getFilenames(commandLine);
    const Catalogue catalogue;
    return runOnFiles(filenames, commandLine, [&catalogue](const QString& filename, FileReport& report) {
        const ConfiguredIP configured = loadConfigured(catalogue, filename);
        report.setIP(configured.ip.description);
        const Velmora::Generation generation = configured.leaf->getGeneration();
        const bool isGood = generation.check() && generation.runGuarded(BRINDLE_HERE, [&generation] {
            generation.getArguments();
            return true;
        });
        Brindle::console.print(isGood ? "Check done" : "Check failed");
        return isGood;
    });
}

} // namespace

const Brindle::Command checkCommand{"check", "check configurations", help, getFileOptions(), run};

} // namespace GenerateTool
