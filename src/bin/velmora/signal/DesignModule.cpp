#include <velmora/signal/DesignModule.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include <liquid/liquid.h>

namespace {

std::vector<float> toFloats(const double* values, std::size_t count) {
    std::vector<float> floats(count);
    std::transform(values, values + count, floats.begin(), [](double value) { return static_cast<float>(value); });
    return floats;
}

/// Makes them symmetric to the last bit. False when they are no numbers.
bool give(const std::vector<float>& floats, double scale, double* coefficients) {
    for (std::size_t index = 0; index < floats.size(); ++index) {
        const float sum = floats[index] + floats[floats.size() - 1 - index];
        coefficients[index] = scale * static_cast<double>(sum) / 2;
    }
    return std::all_of(coefficients, coefficients + floats.size(), [](double value) { return std::isfinite(value); });
}

bool designEquiripple(std::size_t tapCount, std::size_t bandCount, const double* edges, const double* gains,
                      const double* weights, double* coefficients) {
    std::vector<float> floatEdges = toFloats(edges, 2 * bandCount);
    std::vector<float> floatGains = toFloats(gains, bandCount);
    std::vector<float> floatWeights = toFloats(weights, bandCount);
    std::vector<float> floats(tapCount);
    // the call that does all in one goes on with what could not be made
    auto* const design =
        firdespm_create(static_cast<unsigned>(tapCount), static_cast<unsigned>(bandCount), floatEdges.data(),
                        floatGains.data(), floatWeights.data(), nullptr, LIQUID_FIRDESPM_BANDPASS);
    if (!design)
        return false;
    const bool isDone = firdespm_execute(design, floats.data()) == LIQUID_OK;
    firdespm_destroy(design);
    return isDone && give(floats, 1, coefficients);
}

bool designKaiserLowPass(std::size_t tapCount, double cutoff, double attenuation, double* coefficients) {
    std::vector<float> floats(tapCount);
    return liquid_firdes_kaiser(static_cast<unsigned>(tapCount), static_cast<float>(cutoff),
                                static_cast<float>(attenuation), 0, floats.data()) == LIQUID_OK &&
           give(floats, 2 * cutoff, coefficients);
}

} // namespace

const VelmoraDesignModule* velmora_design_module() {
    static const VelmoraDesignModule module{designEquiripple, designKaiserLowPass};
    return &module;
}
