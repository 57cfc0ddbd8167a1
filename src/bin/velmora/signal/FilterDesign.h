#pragma once

#include <velmora/signal/Band.h>
#include <velmora/signal/DesignWish.h>
#include <velmora/signal/Scaling.h>

#include <optional>
#include <string>
#include <vector>

namespace Velmora {

/// A linear-phase filter and how far it is what was wished.
struct FilterDesign {
    std::vector<double> unrounded; ///< At a gain of about 1; for a root raised cosine as `getRootRaisedCosine` has it.
    ScaledCoefficients rounded;    ///< As `Scaling::Kind::Full` makes them.
    std::optional<BandFigures> figures; ///< Of the rounded coefficients; none for a root raised cosine.
    bool isMet = true;                  ///< Whether they are within ripple and attenuation.
    std::string remark;                 ///< What is to be known; when it is not met what to relax. May be empty.
};

/// The filter of the fewest taps that is within ripple and attenuation after rounding, or, when none is, what was
/// reached with the most. Throws Brindle::InvalidRequest for a wish that means nothing, Brindle::Critical for one that
/// no filter meets, and Brindle::Critical with the fields "module" and "reason" when the module of filter designs is
/// missing, which the root raised cosine does without.
FilterDesign designFilter(const DesignWish& wish);

} // namespace Velmora
