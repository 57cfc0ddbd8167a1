#include <Brindle/core/Label.h>

#include <array>
#include <charconv>
#include <cmath>

namespace Brindle {

std::string getLabel(double value) {
    std::array<char, 400>
        digits{}; // the largest double has 309 digits before the point, the smallest 324 + 17 after it
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
    std::string label(digits.begin(), end);
    if (std::isfinite(value) && label.find('.') == label.npos)
        label += ".0";
    return label;
}

} // namespace Brindle
