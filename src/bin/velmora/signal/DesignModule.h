#pragma once

#include <cstddef>

/// What the module of filter designs does, in plain types, so that nothing else depends on the library that it is made
/// with. The functions write the coefficients of a symmetric filter with a gain of about 1 and return false when they
/// found none.
struct VelmoraDesignModule {
    /// Smallest weighted error over bands (Parks and McClellan, 1972). `edges` holds two for each band, in units of the
    /// sample rate, `gains` and `weights` one each.
    bool (*designEquiripple)(std::size_t tapCount, std::size_t bandCount, const double* edges, const double* gains,
                             const double* weights, double* coefficients);
    /// A low-pass filter by a Kaiser window for that attenuation in dB.
    bool (*designKaiserLowPass)(std::size_t tapCount, double cutoff, double attenuation, double* coefficients);
};

/// The function of the module that gives them.
extern "C" const VelmoraDesignModule* velmora_design_module();
