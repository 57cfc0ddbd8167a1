#include <velmora-generate/Commands.h>

#include <velmora-generate/Catalogue.h>
#include <velmora-generate/ExitCode.h>

#include <velmora/form/Form.h>

#include <iostream>

namespace GenerateTool {

namespace {

constexpr std::string_view help = R"(Usage: velmora-generate template IP

Writes a configuration with the reset values of an IP, given by its name or uid,
to standard output.

Example: velmora-generate template Systolic > filter.velmora
)";

int run(const Brindle::CommandLine& commandLine) {
    const auto leaf =
        loadForm(Catalogue().getNamed(QString::fromStdString(commandLine.getOperand("The name of the IP"))));
    leaf->getForm()->reset();
    std::cout << leaf->getConfiguration().getContent();
    return ExitCode::Done;
}

} // namespace

const Brindle::Command templateCommand{
    "template", "make a configuration with the reset values of an IP", help, {}, run};

} // namespace GenerateTool
