#include <velmora-generate/Commands.h>

#include <velmora-generate/ExitCode.h>
#include <velmora-generate/Preview.h>

#include <velmora/rules/HdlInstantiation.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

#include <iostream>

namespace GenerateTool {

namespace {

constexpr std::string_view help = R"(Usage: velmora-generate instantiate FILE

Shows what a VHDL design needs to use the entity that a configuration gives, in
three parts: clauses to stand before an entity ("-- context"), a signal for each
port before "begin" ("-- declarations"), and the instantiation behind it
("-- statements"). Nothing is written. FILE may be - for standard input.

Exit status: 0 done, 1 when nothing would be generated or it has no entity, 2
for a wrong command line.

Example: velmora-generate instantiate filter.velmora
)";

Velmora::HdlInstantiation getParts(const std::optional<Velmora::HdlUnit>& unit) {
    if (!unit)
        throw Brindle::located(Brindle::Fatal("The generated files hold no entity or module that can be read"),
                               BRINDLE_HERE);
    if (const auto parts = Velmora::getInstantiation(*unit))
        return *parts;
    throw Brindle::located(
        Brindle::Fatal("'" + unit->name + "' has a generic or port that is no constant or signal of VHDL"),
        BRINDLE_HERE);
}

int run(const Brindle::CommandLine& commandLine) {
    const QString filename = QString::fromStdString(commandLine.getOperand("The configuration file"));
    Brindle::console.setQuiet(true);
    const Preview preview = makePreview(Catalogue(), filename);
    if (!preview.isGood)
        return ExitCode::Failed;
    const auto parts = getParts(preview.unit);
    std::cout << "-- context\n"
              << parts.context << "\n-- declarations\n"
              << parts.declarations << "\n-- statements\n"
              << parts.statements;
    return ExitCode::Done;
}

} // namespace

const Brindle::Command instantiateCommand{"instantiate", "show how a design uses what is generated", help, {}, run};

} // namespace GenerateTool
