#include <velmora-generate/CoefficientOutput.h>

#include <velmora/signal/NumberText.h>

#include <Brindle/core/Label.h>

#include <QJsonArray>

#include <iostream>

namespace GenerateTool {

QJsonArray toJsonArray(const std::vector<double>& numbers) {
    QJsonArray array;
    for (const double number : numbers)
        array += number;
    return array;
}

QJsonObject toJson(const Velmora::ScaledCoefficients& scaled) {
    return {{"coefficients", toJsonArray({scaled.coefficients.begin(), scaled.coefficients.end()})},
            {"scale", scaled.scale},
            {"taps", static_cast<int>(scaled.coefficients.size())},
            {"roundingError", scaled.largestError}};
}

void writeList(const Velmora::ScaledCoefficients& scaled) {
    const char* separator = "";
    for (const int coefficient : scaled.coefficients) {
        std::cout << separator << coefficient;
        separator = ", ";
    }
    std::cout << '\n';
}

std::string getNote(const Velmora::ScaledCoefficients& scaled) {
    return Brindle::getLabel(scaled.coefficients.size()) + " coefficients, scale " +
           Velmora::getRealText(scaled.scale) + ", largest rounding error " +
           Velmora::getFixedText(scaled.largestError, 3) + " of a unit";
}

} // namespace GenerateTool
