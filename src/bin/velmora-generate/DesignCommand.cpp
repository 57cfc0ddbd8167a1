#include <velmora-generate/CoefficientOutput.h>
#include <velmora-generate/Commands.h>
#include <velmora-generate/ExitCode.h>
#include <velmora-generate/JsonOutput.h>
#include <velmora-generate/NumberOptions.h>

#include <velmora/signal/FilterDesign.h>
#include <velmora/signal/NumberText.h>

#include <Brindle/tool/UsageError.h>

#include <QJsonArray>

#include <array>
#include <iostream>

namespace GenerateTool {

namespace {

using Velmora::DesignWish;

constexpr std::string_view help =
    R"(Usage: velmora-generate coefficients design KIND --width BITS [OPTION...]

Designs a linear-phase filter and writes its coefficients, ready to stand behind
"Coefficients = " in a configuration. KIND is lowpass, highpass, bandpass,
bandstop or rootraisedcosine. Of the filters that are within ripple and
attenuation after rounding, it is the one of the fewest taps; where there is
none, standard error tells what was reached, and what to relax.

      --width BITS        Width of the coefficients, 2 to 32. They are scaled by
                          the largest factor with which all of them fit.
      --pass FREQUENCY    Edge of the pass band in units of the sample rate;
                          LOW,HIGH for bandpass and bandstop.
      --stop FREQUENCY    The same for the stop band.
      --rate HZ           The sample rate, when the edges are in Hz.
      --ripple DB         Largest over smallest magnitude in all pass bands.
      --attenuation DB    Largest magnitude in the pass bands over that in the
                          stop bands.
      --method METHOD     equiripple (Parks and McClellan, which takes the
                          fewest taps) or kaiser (windows).
      --taps N            That many taps; ripple and attenuation may be missing.
      --most N            At most that many taps, 56 unless given; the Mac fir
                          takes 160.
      --even              An even number of taps, as the symmetric filter takes.
      --odd               An odd number of taps.
      --symbol-samples N  Samples of a symbol of the root raised cosine,
      --rolloff FACTOR    its roll-off, 0 to 1,
      --span N            its length in symbols: it has span times samples and
                          one taps.
      --json              Write one JSON text, an object with "coefficients",
                          "scale", "taps", "roundingError", "ideal" (what was
                          rounded), and "ripple" and "attenuation" as reached.

Exit status: 0 done, 1 no filter was found, 2 a wrong command line.

Example: velmora-generate coefficients design lowpass --pass 0.10 --stop 0.15 \
             --ripple 0.2 --attenuation 60 --width 16
         velmora-generate coefficients design rootraisedcosine \
             --symbol-samples 4 --rolloff 0.25 --span 8 --width 16
)";

[[noreturn]] void refuse(const std::string& message) {
    throw Brindle::located(Brindle::UsageError(message), BRINDLE_HERE);
}

DesignWish::Kind getKind(const Brindle::CommandLine& commandLine) {
    const std::string name = commandLine.getOperand("The kind of filter");
    const auto kind = Velmora::parseDesignKind(name);
    if (!kind)
        refuse("The kind '" + name + "' should be lowpass, highpass, bandpass, bandstop or rootraisedcosine");
    return *kind;
}

DesignWish::Method getMethod(const Brindle::CommandLine& commandLine) {
    const std::string name = commandLine.find("method").value_or("equiripple");
    if (name != "equiripple" && name != "kaiser")
        refuse("The method '" + name + "' should be equiripple or kaiser");
    return name == "kaiser" ? DesignWish::Method::Kaiser : DesignWish::Method::Equiripple;
}

DesignWish::Parity getParity(const Brindle::CommandLine& commandLine) {
    if (commandLine.has("even") && commandLine.has("odd"))
        refuse("A number of taps is not both even and odd");
    if (commandLine.has("even"))
        return DesignWish::Parity::Even;
    return commandLine.has("odd") ? DesignWish::Parity::Odd : DesignWish::Parity::Any;
}

/// What of the options makes no sense for that kind of filter.
void refuseForeign(const Brindle::CommandLine& commandLine, bool isRootRaisedCosine) {
    constexpr std::array<const char*, 7> ofBands{"pass", "stop", "rate", "ripple", "attenuation", "method", "taps"};
    constexpr std::array<const char*, 3> ofSymbols{"symbol-samples", "rolloff", "span"};
    const auto refuseAll = [&](const auto& options) {
        for (const char* option : options) {
            if (commandLine.has(option))
                refuse("Option --" + std::string(option) + " does not belong to this kind of filter");
        }
    };
    if (isRootRaisedCosine)
        refuseAll(ofBands);
    else
        refuseAll(ofSymbols);
}

std::vector<double> getEdges(const Brindle::CommandLine& commandLine, std::string_view option) {
    commandLine.get(option);
    std::vector<double> edges = findReals(commandLine, option);
    const double rate = findReal(commandLine, "rate").value_or(1);
    if (rate <= 0)
        refuse("Option --rate should be greater than 0");
    for (double& edge : edges)
        edge /= rate;
    return edges;
}

DesignWish getWish(const Brindle::CommandLine& commandLine) {
    DesignWish wish;
    wish.kind = getKind(commandLine);
    const bool isRootRaisedCosine = wish.kind == DesignWish::Kind::RootRaisedCosine;
    refuseForeign(commandLine, isRootRaisedCosine);
    wish.width = getWidth(commandLine);
    wish.mostTaps = findInteger(commandLine, "most", Velmora::fewestTaps, Velmora::endlessTaps);
    wish.parity = getParity(commandLine);
    if (isRootRaisedCosine) {
        for (const char* option : {"symbol-samples", "rolloff", "span"})
            commandLine.get(option);
        wish.symbolSamples = *findInteger(commandLine, "symbol-samples", 1, Velmora::endlessTaps);
        wish.rolloff = *findReal(commandLine, "rolloff");
        wish.span = *findInteger(commandLine, "span", 1, Velmora::endlessTaps);
        return wish;
    }
    wish.passEdges = getEdges(commandLine, "pass");
    wish.stopEdges = getEdges(commandLine, "stop");
    wish.ripple = findReal(commandLine, "ripple");
    wish.attenuation = findReal(commandLine, "attenuation");
    wish.method = getMethod(commandLine);
    wish.tapCount = findInteger(commandLine, "taps", Velmora::fewestTaps, Velmora::endlessTaps);
    return wish;
}

Velmora::FilterDesign design(const DesignWish& wish) {
    try {
        return Velmora::designFilter(wish);
    } catch (const Brindle::InvalidRequest& exception) {
        throw Brindle::reworded<Brindle::UsageError>(exception.getMessage(), exception);
    }
}

QJsonObject getJson(const Velmora::FilterDesign& design) {
    QJsonObject object = toJson(design.rounded);
    std::vector<double> ideal = design.unrounded;
    for (double& coefficient : ideal)
        coefficient *= design.rounded.scale;
    object["ideal"] = toJsonArray(ideal);
    const auto& figures = design.figures;
    object["ripple"] = figures ? QJsonValue(figures->ripple) : QJsonValue();
    object["attenuation"] = figures ? QJsonValue(figures->attenuation) : QJsonValue();
    return object;
}

std::string getFiguresNote(const Velmora::BandFigures& figures) {
    return "Ripple " + Velmora::getFixedText(figures.ripple, 3) + " dB, attenuation " +
           Velmora::getFixedText(figures.attenuation, 2) + " dB";
}

int run(const Brindle::CommandLine& commandLine) {
    const auto design = GenerateTool::design(getWish(commandLine));
    if (!design.isMet)
        throw Brindle::located(Brindle::Critical("No filter was found: " + design.remark), BRINDLE_HERE);
    if (commandLine.has("json"))
        JsonOutput().write(QJsonDocument(getJson(design)));
    else
        writeList(design.rounded);
    std::cerr << getNote(design.rounded) << '\n';
    if (design.figures)
        std::cerr << getFiguresNote(*design.figures) << '\n';
    if (!design.remark.empty())
        std::cerr << design.remark << '\n';
    return ExitCode::Done;
}

} // namespace

const Brindle::Command designCommand{"coefficients design",
                                     "design the coefficients of a filter",
                                     help,
                                     {{"width"},
                                      {"pass"},
                                      {"stop"},
                                      {"rate"},
                                      {"ripple"},
                                      {"attenuation"},
                                      {"method"},
                                      {"taps"},
                                      {"most"},
                                      {"even", false},
                                      {"odd", false},
                                      {"symbol-samples"},
                                      {"rolloff"},
                                      {"span"},
                                      {"json", false}},
                                     run};

} // namespace GenerateTool
