#pragma once

#include <velmora/signal/DesignWish.h>

#include <vector>

namespace Velmora {

/// Frequencies, in units of the sample rate, that are to pass or to be stopped.
struct Band {
    double begin = 0;
    double end = 0;
    bool isPass = false;
};

/// The bands of a wish in ascending order, from 0 to 0.5 with the transitions left out. It is a checked one and no root
/// raised cosine.
std::vector<Band> getBands(const DesignWish& wish);

/// The widths of the narrowest and the widest transition between bands.
struct Transitions {
    double narrowest = 0;
    double widest = 0;
};
Transitions getTransitions(const std::vector<Band>& bands);

/// The same with stop bands that reach to that distance from the pass bands.
std::vector<Band> narrowTransitions(std::vector<Band> bands, double width);

/// What a linear-phase filter does in its bands, in dB, `bestFigure` at most.
struct BandFigures {
    double ripple = 0;      ///< Largest over smallest magnitude in all pass bands.
    double attenuation = 0; ///< Largest magnitude in the pass bands over that in the stop bands.
    double overshoot = 0;   ///< Largest magnitude anywhere over that in the pass bands.
};

constexpr double bestFigure = 400; ///< dB

/// The figures of symmetric coefficients, exact to a thousandth of a dB.
BandFigures getBandFigures(const std::vector<double>& coefficients, const std::vector<Band>& bands);

} // namespace Velmora
