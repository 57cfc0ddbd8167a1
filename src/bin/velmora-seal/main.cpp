#include <Brindle/tool/Tool.h>
#include <velmora-seal/Commands.h>
#include <velmora-seal/ExitCode.h>
#include <velmora-seal/Report.h>
#include <velmora/rules/Version.h>

#include <new>

namespace SealTool {

namespace {

int run(const Brindle::Command& command, const Brindle::CommandLine& commandLine) {
    return command.run(commandLine);
}

int tellFailure(const std::exception& exception) {
    if (const auto* own = dynamic_cast<const Brindle::Exception*>(&exception)) {
        showProblem(getReport(*own));
        return getExitCode(*own);
    }
    showProblem(dynamic_cast<const std::bad_alloc*>(&exception) ? "Not enough memory" : exception.what());
    return ExitCode::UsageOrFile;
}

const Brindle::Tool tool{
    "velmora-seal",
    Velmora::version.text,
    "Makes and keeps the keys of sealed generator scripts and of protected HDL regions, and seals,\n"
    "protects and opens them.\n",
    "Exit status:\n"
    "  0  done\n"
    "  2  a wrong command line, or a file that cannot be used\n"
    "  3  the input is malformed\n"
    "  4  no key at hand can open it\n"
    "  5  it was altered after it was sealed or protected, or an envelope is for other keys\n"
    "  6  there is nothing to open, or no trusted signer signed the script\n"
    "  7  there is nothing to protect\n\n"
    "Example: velmora-seal keygen script -o keys\n",
    {&keygenCommand, &recipientsCommand, &sealCommand, &unsealCommand, &protectCommand, &openCommand, &infoCommand},
    run,
    tellFailure};

} // namespace

} // namespace SealTool

int main(int argumentCount, char** arguments) {
    return Brindle::runTool(SealTool::tool, argumentCount, arguments);
}
