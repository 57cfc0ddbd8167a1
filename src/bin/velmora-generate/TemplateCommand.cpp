#include <velmora-generate/TemplateCommand.h>

#include <velmora-generate/Catalogue.h>
#include <velmora-generate/Operands.h>

#include <velmora/form/Form.h>

#include <iostream>

namespace GenerateTool {

namespace {

constexpr const char* help = R"(Usage: velmora-generate template IP

Writes a configuration with the reset values of an IP, given by its name or uid,
to standard output.

Example: velmora-generate template Systolic > filter.velmora
)";

ExitCode run(const QCommandLineParser&, const QStringList& operands) {
    const auto leaf = loadForm(Catalogue().getNamed(requireOneIP(operands)));
    leaf->getForm()->reset();
    std::cout << leaf->getConfiguration().getContent();
    return ExitCode::Done;
}

} // namespace

const Command templateCommand{"template", "make a configuration with the reset values of an IP", help, {}, run};

} // namespace GenerateTool
