#include <velmora-generate/Commands.h>

#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/FileRun.h>
#include <velmora-generate/GeneratedDesign.h>
#include <velmora-generate/Output.h>

#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/files/OutputFiles.h>

#include <algorithm>
#include <optional>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::Generation;

constexpr std::string_view help = R"(Usage: velmora-generate bench FILE... [-o OUTPUT] [-j N] [--json] [-q]

Writes the self-checking test bench of what is generated from a configuration:
the file ENTITY_tb.vhd beside it, or for an IP that generates its bench among
its files this one. FILE may be - for standard input. The file is replaced only
when all went well. A file that fails does not stop the others.

  -o, --output OUTPUT  The bench of the one FILE, or an existing directory for
                       the benches of several.
  -j, --jobs N         Handle up to N files at a time, 1 unless given. What is
                       written and told does not depend on it.
      --json           Write one JSON text, a list with an object for each file:
                       "file", "ip", "output", "succeeded" and "messages".
  -q, --quiet          Show errors alone.

Exit status: 0 when all benches were written, 1 when one was not, 2 for a wrong
command line.

Example: velmora-generate bench filter.velmora -o sim/filter_tb.vhd
)";

/// A bench and its name without the extension.
struct Bench {
    QString name;
    std::string content;
};

/// The bench that is one of the generated files: tb_ENTITY.vhd.
std::optional<Bench> findGenerated(const Generation& generation) {
    const QString name = "tb_" + generation.entityName;
    const auto files = generateFiles(generation);
    const auto found = std::ranges::find_if(
        files, [&name](const GeneratedFile& file) { return file.name.section('/', -1) == name + ".vhd"; });
    return found == files.end() ? std::nullopt : std::optional(Bench{name, found->content});
}

Bench makeBench(const Velmora::IPLeaf& leaf, const Generation& generation) {
    const Velmora::GeneratorScript script(leaf.getScriptFilename());
    const QString name = generation.entityName + "_tb";
    if (const auto text = script.makeTestBench(generation.getArguments()))
        return {name, Velmora::HdlFile::getContent(*text, name + ".vhd")};
    if (generation.isDirectory()) {
        if (const auto bench = findGenerated(generation))
            return *bench;
    }
    throw Brindle::Fatal("IP '" + leaf.getName() + "' has no test bench");
}

bool writeBench(const ConfiguredIP& configured, const QString& filename, Output& output, FileReport& report) {
    const Generation generation = configured.leaf->getGeneration();
    return generation.check() && generation.runGuarded(BRINDLE_HERE, [&] {
        const unsigned long errorCount = console.getErrorCount();
        const Bench bench = makeBench(*configured.leaf, generation);
        if (console.getErrorCount() != errorCount)
            return false;
        const QString path = output.take(filename, bench.name, false);
        Brindle::OutputFiles files(BRINDLE_HERE);
        output.add(files, path, bench.content);
        files.commit();
        report.setOutput(path);
        return true;
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
        return writeBench(configured, filename, output, report);
    };
    return runOnFilesApart(filenames, commandLine, handle, output);
}

} // namespace

const Brindle::Command benchCommand{"bench", "write test benches of what is generated", help, getWritingOptions(), run};

} // namespace GenerateTool
