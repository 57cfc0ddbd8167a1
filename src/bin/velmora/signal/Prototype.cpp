#include <velmora/signal/Prototype.h>

#include <velmora/signal/DesignModule.h>

#include <Brindle/core/Module.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace Velmora {

namespace {

using Taps = std::vector<double>;

const VelmoraDesignModule& getModule() {
    using Getter = decltype(velmora_design_module);
    static const auto* const module = Brindle::Module("velmora_design").find<Getter>("velmora_design_module")();
    return *module;
}

} // namespace

AllowedErrors getAllowedErrors(const DesignWish& wish) {
    // What stands for a wish that is left out only sets the balance.
    constexpr double usualRipple = 1;       // dB
    constexpr double usualAttenuation = 40; // dB
    const double ratio = std::pow(10, wish.ripple.value_or(usualRipple) / 20);
    const double pass = (ratio - 1) / (ratio + 1);
    return {pass, (1 + pass) * std::pow(10, -wish.attenuation.value_or(usualAttenuation) / 20)};
}

Prototype::Prototype(const DesignWish& wish, std::vector<Band> bands)
    : _method(wish.method), _bands(std::move(bands)), _allowed(getAllowedErrors(wish)) {
    getModule();
}

std::optional<Taps> Prototype::design(int tapCount, int variant) const {
    // 0, 1, -1, 2, -2, ...
    const int offset = (variant + 1) / 2 * (variant % 2 == 1 ? 1 : -1);
    const auto count = static_cast<std::size_t>(tapCount);
    if (_method == DesignWish::Method::Equiripple)
        return designEquiripple(count, _allowed.pass / _allowed.stop * std::exp2(0.5 * offset));
    return designKaiser(count, -20 * std::log10(std::min(_allowed.pass, _allowed.stop)) + offset);
}

std::optional<Taps> Prototype::designEquiripple(std::size_t tapCount, double stopWeight) const {
    Taps edges;
    Taps gains;
    Taps weights;
    for (const Band& band : _bands) {
        edges.insert(edges.end(), {band.begin, band.end});
        gains.push_back(band.isPass ? 1 : 0);
        weights.push_back(band.isPass ? 1 : stopWeight);
    }
    Taps taps(tapCount);
    const bool isFound =
        getModule().designEquiripple(tapCount, _bands.size(), edges.data(), gains.data(), weights.data(), taps.data());
    return isFound ? std::optional(taps) : std::nullopt;
}

/// The sum of ideal filters, each 1 up to the middle of a transition, with the signs that make the bands.
std::optional<Taps> Prototype::designKaiser(std::size_t tapCount, double attenuation) const {
    Taps taps(tapCount);
    Taps lowPass(tapCount);
    for (std::size_t band = 0; band + 1 < _bands.size(); ++band) {
        const double cutoff = (_bands[band].end + _bands[band + 1].begin) / 2;
        if (!getModule().designKaiserLowPass(tapCount, cutoff, attenuation, lowPass.data()))
            return std::nullopt;
        for (std::size_t index = 0; index < tapCount; ++index)
            taps[index] += _bands[band].isPass ? lowPass[index] : -lowPass[index];
    }
    if (_bands.back().isPass)
        taps[tapCount / 2] += 1; // the filter up to half the sample rate; the count is odd
    return taps;
}

namespace {

/// Height of the root raised cosine at a quarter of a symbol over the roll-off, where numerator and denominator are
/// zero: the ratio of their slopes.
double getCorner(double rolloff) {
    const double angle = std::numbers::pi / (4 * rolloff);
    const double sine = (1 + 2 / std::numbers::pi) * std::sin(angle);
    const double cosine = (1 - 2 / std::numbers::pi) * std::cos(angle);
    return rolloff / std::numbers::sqrt2 * (sine + cosine);
}

} // namespace

std::vector<double> getRootRaisedCosine(int symbolSamples, double rolloff, int span) {
    const auto sinc = [](double x) { return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x); };
    const int last = symbolSamples * span;
    Taps taps;
    for (int index = 0; index <= last; ++index) {
        const double time = (index - last / 2.0) / symbolSamples; // in symbols
        const double product = 4 * rolloff * time;
        const double cosine = std::cos(std::numbers::pi * (1 + rolloff) * time);
        const double numerator = 4 * rolloff / std::numbers::pi * cosine + (1 - rolloff) * sinc((1 - rolloff) * time);
        const double denominator = 1 - product * product;
        const double height = std::abs(denominator) > 1e-9 ? numerator / denominator : getCorner(rolloff);
        taps.push_back(height / std::sqrt(symbolSamples));
    }
    return taps;
}

} // namespace Velmora
