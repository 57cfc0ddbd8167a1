#include <velmora-generate/GeneratedDesign.h>

#include <velmora/generation/HdlFile.h>
#include <velmora/rules/ProtectedRegions.h>
#include <velmora/rules/VerilogModules.h>
#include <velmora/rules/VhdlEntities.h>

namespace GenerateTool {

namespace {

using Velmora::HdlFile;
using Velmora::HdlUnit;

GeneratedFile makeFile(const QString& name, const QString& text) {
    return {name, HdlFile::getContent(text, name)};
}

std::vector<GeneratedFile> toFiles(const QString& entityName, const QString& text) {
    return {makeFile(entityName + ".vhd", text)};
}

std::vector<GeneratedFile> toFiles(const QString& entityName, const Velmora::GeneratedFiles& generated) {
    Velmora::requireInside(entityName, generated);
    std::vector<GeneratedFile> files;
    for (const auto& [name, text] : generated)
        files.push_back(makeFile(name, text));
    return files;
}

std::vector<HdlUnit> readUnits(const GeneratedFile& file) {
    const bool isVhdl = file.name.endsWith(".vhd") || file.name.endsWith(".vhdl");
    if (isVhdl)
        return Velmora::readVhdlEntities(file.content);
    const bool isVerilog = file.name.endsWith(".v") || file.name.endsWith(".sv");
    return isVerilog ? Velmora::readVerilogModules(file.content) : std::vector<HdlUnit>();
}

} // namespace

std::vector<GeneratedFile> generateFiles(const Velmora::Generation& generation) {
    return std::visit([&](const auto& script) { return toFiles(generation.entityName, script()); }, generation.script);
}

std::optional<HdlUnit> findUnit(const std::vector<GeneratedFile>& files, const QString& entityName) {
    std::optional<HdlUnit> other;
    for (const GeneratedFile& file : files) {
        const auto units = readUnits(file);
        for (const HdlUnit& unit : units) {
            if (QString::fromStdString(unit.name).compare(entityName, Qt::CaseInsensitive) == 0)
                return unit;
        }
        if (!other && !units.empty())
            other = units.back();
    }
    return other;
}

} // namespace GenerateTool
