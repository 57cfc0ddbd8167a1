#pragma once

namespace Velmora {

/// The zoom of all description pages; 1 is their own size.
class PageZoom {
public:
    static double get() { return factor; }
    /// From 0.5 to 3, beyond which the nearest is taken.
    static void set(double wanted);

private:
    static inline double factor = 1;
};

} // namespace Velmora
