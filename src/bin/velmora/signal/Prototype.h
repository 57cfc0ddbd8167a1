#pragma once

#include <velmora/signal/Band.h>
#include <velmora/signal/DesignWish.h>

#include <optional>
#include <vector>

namespace Velmora {

/// How far from 1 and 0 the response may be in the pass and in the stop bands of a wish.
struct AllowedErrors {
    double pass = 0;
    double stop = 0;
};

AllowedErrors getAllowedErrors(const DesignWish& wish);

/// Filters of a number of taps for the bands of a wish, before they are rounded. For each number there are several, of
/// which the first is the right one as long as nothing is rounded.
class Prototype {
public:
    /// Takes a checked wish that is no root raised cosine, and its bands or narrower transitions. Loads the module of
    /// filter designs at its first use; throws Brindle::Critical with the fields "module" and "reason" when that is
    /// missing.
    Prototype(const DesignWish& wish, std::vector<Band> bands);

    static constexpr int variantCount = 9;

    /// None where the method finds no filter.
    std::optional<std::vector<double>> design(int tapCount, int variant) const;

private:
    std::optional<std::vector<double>> designEquiripple(std::size_t tapCount, double stopWeight) const;
    std::optional<std::vector<double>> designKaiser(std::size_t tapCount, double attenuation) const;

    const DesignWish::Method _method;
    const std::vector<Band> _bands;
    const AllowedErrors _allowed;
};

/// The taps of a root raised cosine filter, its gain for a constant the square root of the samples of a symbol.
/// (Proakis, Digital Communications, gives the response, of which this is the inverse Fourier transform.)
std::vector<double> getRootRaisedCosine(int symbolSamples, double rolloff, int span);

} // namespace Velmora
