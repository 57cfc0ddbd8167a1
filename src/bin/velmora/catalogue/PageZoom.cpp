#include <velmora/catalogue/PageZoom.h>

#include <algorithm>
#include <cmath>

namespace Velmora {

void PageZoom::set(double wanted) {
    constexpr double smallest = 0.5;
    constexpr double largest = 3;
    constexpr double hundredth = 0.01; // what steps up and down leave beside 1
    factor = std::clamp(wanted, smallest, largest);
    if (std::abs(factor - 1) < hundredth)
        factor = 1;
}

} // namespace Velmora
