#include <velmora-generate/CoefficientOutput.h>
#include <velmora-generate/Commands.h>
#include <velmora-generate/ConfiguredIP.h>
#include <velmora-generate/ExitCode.h>
#include <velmora-generate/JsonOutput.h>
#include <velmora-generate/NumberOptions.h>

#include <velmora/rules/Coefficients.h>
#include <velmora/rules/Configuration.h>
#include <velmora/signal/FrequencyResponse.h>
#include <velmora/signal/NumberText.h>
#include <velmora/signal/Scaling.h>
#include <velmora/signal/UsedCoefficients.h>

#include <Brindle/tool/UsageError.h>

#include <QJsonArray>

#include <iostream>

namespace GenerateTool {

namespace {

constexpr std::string_view help =
    R"(Usage: velmora-generate coefficients response FILE [--points N] [--json]
       velmora-generate coefficients response --list LIST --width BITS [--points N] [--json]

Tells what the filter of a configuration does to sines, with its coefficients as
the hardware uses them, in three columns: frequency in units of the sample rate
from 0 to 0.5, magnitude in dB relative to the largest (-400 where it is zero),
and phase in radians. FILE "-" is the standard input.

      --list LIST   Coefficients, as a configuration holds them, in place of FILE,
      --width BITS  and their width, 1 to 32.
      --points N    Number of frequencies, 2 to 1000000; 512 unless given.
      --json        Write one JSON text, an object with the lists "frequency",
                    "magnitude" and "phase".

Exit status: 0 done, 1 the configuration is no filter's or cannot be read, 2 a
wrong command line.

Example: velmora-generate coefficients response filter.velmora
         velmora-generate coefficients response --list "1, 2, 1" --width 12
)";

constexpr int mostPoints = 1000000;
constexpr int usualPoints = 512;

std::string getText(const Velmora::Configuration& configuration, std::string_view key) {
    if (const auto* entry = configuration.find(key))
        return configuration.getText(*entry);
    configuration.refuseIP("It has no " + std::string(key) + ", as filters do");
}

/// Those of a configuration.
std::vector<double> readCoefficients(const std::string& filename) {
    const auto configuration = readConfiguration(QString::fromStdString(filename));
    const auto* const list = configuration.find("Coefficients");
    const auto width = Velmora::parseInteger(getText(configuration, "CoefficientWidth"));
    const auto coefficients = Velmora::parseCoefficients(getText(configuration, "Coefficients"));
    const auto* const mode = configuration.find("CoefficientMode");
    if (mode && configuration.getText(*mode) != "Constant")
        configuration.refuse("The coefficients are inputs of this filter", *mode);
    if (!width || *width < 1 || *width > static_cast<int>(Velmora::widestCoefficient))
        configuration.refuse("The width should be 1 to 32 bits", *configuration.find("CoefficientWidth"));
    if (coefficients.empty())
        configuration.refuse("Coefficients not defined!", *list);
    return Velmora::getUsedCoefficients(coefficients, static_cast<unsigned>(*width));
}

std::vector<double> getCoefficients(const Brindle::CommandLine& commandLine) {
    const auto list = commandLine.find("list");
    if (!list) {
        if (commandLine.has("width"))
            throw Brindle::located(Brindle::UsageError("Option --width belongs to --list"), BRINDLE_HERE);
        return readCoefficients(commandLine.getOperand("The configuration file"));
    }
    commandLine.requireNoOperand();
    const auto coefficients = Velmora::parseCoefficients(*list);
    if (coefficients.empty())
        throw Brindle::located(Brindle::UsageError("Option --list should hold a coefficient"), BRINDLE_HERE);
    return Velmora::getUsedCoefficients(coefficients, getWidth(commandLine));
}

QJsonObject toJson(const Velmora::FrequencyResponse& response) {
    return {{"frequency", toJsonArray(response.frequency)},
            {"magnitude", toJsonArray(response.magnitude)},
            {"phase", toJsonArray(response.phase)}};
}

void writeColumns(const Velmora::FrequencyResponse& response) {
    for (std::size_t point = 0; point < response.frequency.size(); ++point) {
        std::cout << Velmora::getFixedText(response.frequency[point], 9) << ' '
                  << Velmora::getFixedText(response.magnitude[point], 6) << ' '
                  << Velmora::getFixedText(response.phase[point], 9) << '\n';
    }
}

int run(const Brindle::CommandLine& commandLine) {
    const int pointCount = findInteger(commandLine, "points", 2, mostPoints).value_or(usualPoints);
    const auto response = Velmora::getFrequencyResponse(getCoefficients(commandLine), pointCount);
    if (commandLine.has("json"))
        JsonOutput().write(QJsonDocument(toJson(response)));
    else
        writeColumns(response);
    return ExitCode::Done;
}

} // namespace

const Brindle::Command responseCommand{"coefficients response",
                                       "tell the frequency response of a filter",
                                       help,
                                       {{"list"}, {"width"}, {"points"}, {"json", false}},
                                       run};

} // namespace GenerateTool
