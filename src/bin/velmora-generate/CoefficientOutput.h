#pragma once

#include <velmora/signal/Scaling.h>

#include <QJsonObject>

#include <string>
#include <vector>

namespace GenerateTool {

/// Numbers as a JSON array.
QJsonArray toJsonArray(const std::vector<double>& numbers);

/// "coefficients", "scale", "taps" and "roundingError".
QJsonObject toJson(const Velmora::ScaledCoefficients& scaled);

/// Writes the list to standard output as a configuration holds it.
void writeList(const Velmora::ScaledCoefficients& scaled);

/// What is to be known of it, for standard error: count, scale and rounding error.
std::string getNote(const Velmora::ScaledCoefficients& scaled);

} // namespace GenerateTool
