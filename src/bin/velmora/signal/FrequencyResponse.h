#pragma once

#include <vector>

namespace Velmora {

/// What a FIR filter does to sines, at frequencies that are equally far from each other.
struct FrequencyResponse {
    std::vector<double> frequency;  ///< In units of the sample rate, from 0 to 0.5, both included.
    std::vector<double> magnitude;  ///< In dB relative to the largest of them; `noMagnitude` where it is zero.
    std::vector<double> phase;      ///< In radians, from -pi to pi; 0 where the magnitude is zero.
    std::vector<double> groupDelay; ///< In samples; not a number where the magnitude is zero.
};

constexpr double noMagnitude = -400; ///< dB

/// The response at that many points, 2 or more. The time it takes grows with points times coefficients.
FrequencyResponse getFrequencyResponse(const std::vector<double>& coefficients, int pointCount);

/// What a filter answers to a step from 0 to 1: the sums of its first coefficients.
std::vector<double> getStepResponse(const std::vector<double>& coefficients);

} // namespace Velmora
