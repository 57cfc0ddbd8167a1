#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace Velmora {

/// What a filter is asked for. Frequencies are in units of the sample rate, the width in bits.
struct DesignWish {
    enum class Kind { LowPass, HighPass, BandPass, BandStop, RootRaisedCosine };
    enum class Method { Equiripple, Kaiser };
    enum class Parity { Any, Even, Odd };

    Kind kind = Kind::LowPass;
    unsigned width = 16; ///< Of the coefficients.

    /// One edge of pass and stop band for low-pass and high-pass, two for the others, the lower one first.
    std::vector<double> passEdges;
    std::vector<double> stopEdges;
    /// Largest over smallest magnitude in all pass bands in dB, and that over the largest in the stop bands. Both are
    /// needed unless the number of taps is given.
    std::optional<double> ripple;
    std::optional<double> attenuation;
    Method method = Method::Equiripple;
    std::optional<int> tapCount; ///< None for the fewest that do.
    std::optional<int> mostTaps; ///< None for `usualMostTaps`, and for a number of taps that is given.
    Parity parity = Parity::Any; ///< Of the number of taps.

    int symbolSamples = 4; ///< Samples a symbol of the root raised cosine,
    double rolloff = 0.25; ///< its excess bandwidth, 0 to 1,
    int span = 8;          ///< and its length in symbols.
};

constexpr int fewestTaps = 3;
constexpr int usualMostTaps = 56; ///< What the filters take that compute all taps at once.
constexpr int endlessTaps = 512;  ///< What can be asked for.

/// "lowpass", "highpass", "bandpass", "bandstop" or "rootraisedcosine"; none for another text.
std::optional<DesignWish::Kind> parseDesignKind(std::string_view text);

/// Throws Brindle::InvalidRequest, whose message says what is wrong, for a wish that means nothing.
void checkWish(const DesignWish& wish);

} // namespace Velmora
