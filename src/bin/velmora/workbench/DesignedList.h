#pragma once

#include <velmora/signal/Band.h>

#include <optional>
#include <vector>

namespace Velmora {

/// What is known of a list of coefficients that was designed or imported.
struct DesignedList {
    std::vector<int> coefficients;
    std::vector<double> ideal; ///< What they were before they were rounded, in their unit.

    std::vector<Band> bands;           ///< Of the wish; empty when there was none.
    std::optional<double> ripple;      ///< dB, that was asked for
    std::optional<double> attenuation; ///< dB, the same
};

} // namespace Velmora
