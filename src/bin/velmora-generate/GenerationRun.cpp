#include <velmora-generate/GenerationRun.h>

#include <velmora/generation/HdlFile.h>

#include <Brindle/core/Console.h>
#include <Brindle/files/DirectoryLock.h>
#include <Brindle/files/OutputFiles.h>

#include <variant>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::Generation;

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

} // namespace

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

} // namespace GenerateTool
