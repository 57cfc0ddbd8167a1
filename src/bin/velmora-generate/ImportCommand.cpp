#include <velmora-generate/CoefficientOutput.h>
#include <velmora-generate/Commands.h>
#include <velmora-generate/ExitCode.h>
#include <velmora-generate/JsonOutput.h>
#include <velmora-generate/NumberOptions.h>

#include <velmora/signal/NumberFile.h>

#include <Brindle/files/InputFile.h>
#include <Brindle/tool/UsageError.h>

#include <iostream>

namespace GenerateTool {

namespace {

constexpr std::string_view help =
    R"(Usage: velmora-generate coefficients import FILE --width BITS [--scale SCALE] [--json]

Makes a list of coefficients from the numbers of a file, ready to stand behind
"Coefficients = " in a configuration. FILE holds, and its content tells which:
  - text or CSV: one or several numbers a line, comments behind #, %, ; or //,
    at most one header line;
  - a .coe file of radix 2, 10 or 16;
  - an array in the syntax of C or JSON;
  - a one-dimensional .npy array of floating-point numbers or integers.
Whole numbers that fit stay as they are. Others are scaled, then rounded to the
nearest integer, halves away from zero. FILE "-" is the standard input.

      --width BITS   Width of the coefficients, 1 to 32.
      --scale SCALE  "full", the largest factor with which all of them fit (this
                     is what is done without the option); "power", the largest
                     such power of two; "2^N"; or a number. Whole numbers are
                     then scaled too.
      --json         Write one JSON text, an object with "coefficients",
                     "scale", "taps" and "roundingError".

Exit status: 0 done, 1 the file cannot be read or a number does not fit, 2 a
wrong command line.

Example: velmora-generate coefficients import taps.csv --width 12
)";

constexpr std::size_t largestFile = 256UL * 1024 * 1024; // bytes

std::optional<Velmora::Scaling> findScaling(const Brindle::CommandLine& commandLine) {
    const auto text = commandLine.find("scale");
    try {
        return text ? std::optional(Velmora::parseScaling(*text)) : std::nullopt;
    } catch (const Brindle::InvalidRequest& exception) {
        throw Brindle::reworded<Brindle::UsageError>(exception.getMessage(), exception);
    }
}

int run(const Brindle::CommandLine& commandLine) {
    const std::string filename = commandLine.getOperand("The file of numbers");
    const unsigned width = getWidth(commandLine);
    const auto scaling = findScaling(commandLine);
    const std::string content = Brindle::readInputFile(filename, largestFile);
    const auto numbers = Velmora::readNumbers(content, filename, width);
    const auto scaled = Velmora::importCoefficients(numbers, width, scaling);
    if (commandLine.has("json"))
        JsonOutput().write(QJsonDocument(toJson(scaled)));
    else
        writeList(scaled);
    if (!scaling && scaled.scale != 1)
        std::cerr << "Scaled as far as " << width << " bits allow\n";
    std::cerr << getNote(scaled) << '\n';
    return ExitCode::Done;
}

} // namespace

const Brindle::Command importCommand{"coefficients import",
                                     "make coefficients from the numbers of a file",
                                     help,
                                     {{"width"}, {"scale"}, {"json", false}},
                                     run};

} // namespace GenerateTool
