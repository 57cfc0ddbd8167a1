#include <velmora/signal/Band.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Velmora {

namespace {

/// The real amplitude of symmetric coefficients: their response without its linear phase.
class Amplitude {
public:
    explicit Amplitude(const std::vector<double>& coefficients)
        : _half(coefficients.begin(),
                coefficients.begin() + static_cast<std::ptrdiff_t>((coefficients.size() + 1) / 2)),
          _isOdd(coefficients.size() % 2 == 1) {
        std::ranges::reverse(_half); // the middle first
        for (std::size_t index = _isOdd ? 1 : 0; index < _half.size(); ++index)
            _half[index] *= 2;
    }

    double operator()(double frequency) const {
        const double angle = 2 * std::numbers::pi * frequency;
        // cos((n + 1) x) = 2 cos(x) cos(n x) - cos((n - 1) x), from n = 0, or from n = 1/2 for an even count
        double cosine = std::cos(_isOdd ? 0 : angle / 2);
        double last = std::cos(_isOdd ? angle : angle / 2);
        const double factor = 2 * std::cos(angle);
        double sum = 0;
        for (const double coefficient : _half) {
            sum += coefficient * cosine;
            const double next = factor * cosine - last;
            last = cosine;
            cosine = next;
        }
        return sum;
    }

private:
    std::vector<double> _half;
    const bool _isOdd;
};

/// Smallest and largest magnitude.
struct Extremes {
    double smallest = std::numeric_limits<double>::infinity();
    double largest = 0;

    void take(double magnitude) {
        smallest = std::min(smallest, magnitude);
        largest = std::max(largest, magnitude);
    }
    void take(const Extremes& other) {
        smallest = std::min(smallest, other.smallest);
        largest = std::max(largest, other.largest);
    }
};

/// Where the parabola through three values at -1, 0 and 1 has its vertex.
double getVertex(double before, double middle, double after) {
    return 0.5 * (before - after) / (before - 2 * middle + after);
}

/// The amplitude at the peak that lies within a step of the place, by ever smaller parabolas: beside the edge of a band
/// the ripples are narrow.
double getPeak(const Amplitude& amplitude, double place, double step) {
    double middle = amplitude(place);
    for (int round = 0; round < 4; ++round, step /= 4) {
        const double vertex = getVertex(amplitude(place - step), middle, amplitude(place + step));
        const double peak = amplitude(place + vertex * step);
        if (!(std::abs(vertex) <= 1 && std::abs(peak) != std::abs(middle)))
            break;
        place += vertex * step;
        middle = peak;
    }
    return middle;
}

Extremes getExtremes(const Amplitude& amplitude, std::size_t tapCount, double begin, double end) {
    constexpr double pointsPerLobe = 16; // of those in the middle of a band
    const double count = std::max(std::ceil((end - begin) * static_cast<double>(tapCount) * pointsPerLobe), 4.0);
    const double step = (end - begin) / count;
    std::vector<double> values;
    for (double index = 0; index <= count; ++index)
        values.push_back(amplitude(index == count ? end : begin + index * step));
    Extremes extremes;
    extremes.take(std::abs(values.front()));
    for (std::size_t index = 1; index < values.size(); ++index) {
        extremes.take(std::abs(values[index]));
        if (values[index] * values[index - 1] < 0)
            extremes.smallest = 0; // it goes through zero
        if (index + 1 == values.size())
            break;
        // A peak in the first or the last step stands beside no value that is larger than both its neighbours.
        const bool isAtEnd = index == 1 || index + 2 == values.size();
        if (!isAtEnd && (values[index] > values[index - 1]) == (values[index + 1] > values[index]))
            continue;
        if (std::abs(getVertex(values[index - 1], values[index], values[index + 1])) <= 1)
            extremes.take(std::abs(getPeak(amplitude, begin + static_cast<double>(index) * step, step)));
    }
    return extremes;
}

double toDecibels(double ratio) {
    return std::clamp(20 * std::log10(ratio), -bestFigure, bestFigure);
}

} // namespace

std::vector<Band> getBands(const DesignWish& wish) {
    const auto& pass = wish.passEdges;
    const auto& stop = wish.stopEdges;
    switch (wish.kind) {
    case DesignWish::Kind::LowPass:
        return {{0, pass[0], true}, {stop[0], 0.5, false}};
    case DesignWish::Kind::HighPass:
        return {{0, stop[0], false}, {pass[0], 0.5, true}};
    case DesignWish::Kind::BandPass:
        return {{0, stop[0], false}, {pass[0], pass[1], true}, {stop[1], 0.5, false}};
    default:
        return {{0, pass[0], true}, {stop[0], stop[1], false}, {pass[1], 0.5, true}};
    }
}

Transitions getTransitions(const std::vector<Band>& bands) {
    Transitions transitions{1, 0};
    for (std::size_t band = 0; band + 1 < bands.size(); ++band) {
        const double width = bands[band + 1].begin - bands[band].end;
        transitions = {std::min(transitions.narrowest, width), std::max(transitions.widest, width)};
    }
    return transitions;
}

std::vector<Band> narrowTransitions(std::vector<Band> bands, double width) {
    for (std::size_t index = 0; index + 1 < bands.size(); ++index) {
        Band& band = bands[index];
        Band& next = bands[index + 1];
        if (band.isPass)
            next.begin = std::min(next.begin, band.end + width);
        else
            band.end = std::max(band.end, next.begin - width);
    }
    return bands;
}

BandFigures getBandFigures(const std::vector<double>& coefficients, const std::vector<Band>& bands) {
    const Amplitude amplitude(coefficients);
    Extremes pass;
    Extremes stop;
    Extremes transition;
    double end = 0;
    for (const Band& band : bands) {
        if (band.begin > end)
            transition.take(getExtremes(amplitude, coefficients.size(), end, band.begin));
        (band.isPass ? pass : stop).take(getExtremes(amplitude, coefficients.size(), band.begin, band.end));
        end = band.end;
    }
    if (pass.largest == 0)
        return {bestFigure, -bestFigure, 0};
    return {toDecibels(pass.largest / pass.smallest), toDecibels(pass.largest / stop.largest),
            toDecibels(std::max(transition.largest, pass.largest) / pass.largest)};
}

} // namespace Velmora
