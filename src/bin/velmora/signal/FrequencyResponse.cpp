#include <velmora/signal/FrequencyResponse.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <numeric>

namespace Velmora {

namespace {

using Complex = std::complex<double>;

/// exp(-i pi index / count) for one turn. Quarters of it are exact, so that zeros of a response at 0, 0.25 and 0.5 are.
std::vector<Complex> getTurn(std::size_t count) {
    std::vector<Complex> turn(2 * count);
    for (std::size_t index = 0; index < turn.size(); ++index) {
        const double angle = std::numbers::pi * static_cast<double>(index) / static_cast<double>(count);
        turn[index] = {std::cos(angle), -std::sin(angle)};
        if (2 * index % count == 0)
            turn[index] = {std::round(turn[index].real()), std::round(turn[index].imag())};
    }
    return turn;
}

/// The response and, for the delay, that of the coefficients times their index.
struct Sums {
    Complex plain;
    Complex indexed;
};

Sums getSums(const std::vector<double>& coefficients, const std::vector<Complex>& turn, std::size_t step) {
    Sums sums;
    std::size_t place = 0;
    for (std::size_t index = 0; index < coefficients.size(); ++index) {
        const Complex term = coefficients[index] * turn[place];
        sums.plain += term;
        sums.indexed += static_cast<double>(index) * term;
        place += step;
        if (place >= turn.size())
            place -= turn.size();
    }
    return sums;
}

double getLargestSum(const std::vector<double>& coefficients) {
    return std::accumulate(coefficients.begin(), coefficients.end(), 0.0,
                           [](double sum, double coefficient) { return sum + std::abs(coefficient); });
}

} // namespace

FrequencyResponse getFrequencyResponse(const std::vector<double>& coefficients, int pointCount) {
    const auto intervals = static_cast<std::size_t>(pointCount - 1);
    const std::vector<Complex> turn = getTurn(intervals);
    // What rounding leaves where terms cancel is zero.
    const double zero = 8 * std::numeric_limits<double>::epsilon() * getLargestSum(coefficients);
    FrequencyResponse response;
    for (std::size_t point = 0; point <= intervals; ++point) {
        const Sums sums = getSums(coefficients, turn, point);
        const double magnitude = std::abs(sums.plain);
        const bool isZero = magnitude <= zero;
        response.frequency.push_back(0.5 * static_cast<double>(point) / static_cast<double>(intervals));
        response.magnitude.push_back(isZero ? 0 : magnitude);
        response.phase.push_back(isZero ? 0 : std::arg(sums.plain));
        response.groupDelay.push_back(isZero ? std::numeric_limits<double>::quiet_NaN()
                                             : (sums.indexed / sums.plain).real());
    }
    const double largest = std::ranges::max(response.magnitude);
    for (double& magnitude : response.magnitude)
        magnitude = magnitude > 0 ? std::max(20 * std::log10(magnitude / largest), noMagnitude) : noMagnitude;
    return response;
}

std::vector<double> getStepResponse(const std::vector<double>& coefficients) {
    std::vector<double> sums(coefficients.size());
    std::partial_sum(coefficients.begin(), coefficients.end(), sums.begin());
    return sums;
}

} // namespace Velmora
