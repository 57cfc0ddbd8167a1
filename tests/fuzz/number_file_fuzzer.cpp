#include <fuzz/Property.h>

#include <velmora/signal/NumberFile.h>
#include <velmora/signal/NumberText.h>
#include <velmora/signal/Scaling.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace {

const std::string filename = "taps";

std::string render(const std::vector<double>& numbers, const std::string& before, const std::string& after) {
    std::string text;
    for (const double number : numbers)
        text += (text.empty() ? before : ",\n") + Velmora::getRealText(number);
    return text + after;
}

/// What one format gave the others give too.
void checkFormats(const std::vector<double>& numbers, unsigned width) {
    const auto isReadFrom = [&](const std::string& before, const std::string& after) {
        return Velmora::readNumbers(render(numbers, before, after), filename, width) == numbers;
    };
    require(isReadFrom("tap\n", " ; end\n"), "a text holds every number");
    require(isReadFrom("[", "]"), "a JSON array holds every number");
    require(isReadFrom("double h[] = {", ",};"), "a C array holds every number");
    require(isReadFrom("radix = 10;\ncoefdata = ", ";"), "a file of radix 10 holds every number");
}

void checkScaling(const std::vector<double>& numbers, unsigned width) {
    const auto full = Velmora::importCoefficients(numbers, width, Velmora::Scaling{});
    const auto power = Velmora::importCoefficients(numbers, width, Velmora::Scaling{Velmora::Scaling::Kind::Power});
    require(full.coefficients.size() == numbers.size() && full.largestError <= 0.5, "rounding is to nearest");
    const auto isZero = [](double number) { return number == 0; };
    const bool isZeroAlone = std::ranges::all_of(numbers, isZero);
    require(isZeroAlone || (power.scale <= full.scale && power.scale * 2 > full.scale),
            "a power is the largest that fits");
}

} // namespace

/// The first byte of the input gives the coefficient width, the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const unsigned width = data[0] % Velmora::widestCoefficient + 1;
    try {
        const auto numbers = Velmora::readNumbers({reinterpret_cast<const char*>(data) + 1, size - 1}, filename, width);
        require(!numbers.empty(), "what is accepted holds a number");
        require(std::ranges::all_of(numbers, [](double number) { return std::isfinite(number); }), "it is finite");
        checkFormats(numbers, width);
        checkScaling(numbers, width);
    } catch (const Brindle::Critical& exception) {
        require(exception.getField("filename") == filename, "a refusal names the file");
        require(!exception.getField("line").empty() || !exception.getField("element").empty(), "and the place");
    }
    return 0;
}
