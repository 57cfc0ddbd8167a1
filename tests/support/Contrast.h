#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

/// How well colours can be told apart.
namespace Contrast {

constexpr double legibleText = 4.5;     ///< WCAG 2.1, 1.4.3
constexpr double visibleGraphics = 3.0; ///< WCAG 2.1, 1.4.11

/// Relative luminance, https://www.w3.org/TR/WCAG21/#dfn-relative-luminance
inline double luminanceOf(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// From 1 to 21, https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio
inline double between(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminanceOf(one), luminanceOf(other)});
    return (light + 0.05) / (dark + 0.05);
}

} // namespace Contrast
