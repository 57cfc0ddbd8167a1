#include <velmora/signal/DesignWish.h>

#include <velmora/signal/Scaling.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>

#include <algorithm>
#include <array>
#include <string>

namespace Velmora {

namespace {

using Kind = DesignWish::Kind;

void require(bool holds, const std::string& message) {
    if (!holds)
        throw Brindle::located(Brindle::InvalidRequest(message), BRINDLE_HERE);
}

void requireCount(const std::optional<int>& count, const std::string& name) {
    require(!count || (*count >= fewestTaps && *count <= endlessTaps),
            name + " should be " + Brindle::getLabel(fewestTaps) + " to " + Brindle::getLabel(endlessTaps));
}

bool isParityMet(const DesignWish& wish, int tapCount) {
    return wish.parity == DesignWish::Parity::Any || (wish.parity == DesignWish::Parity::Even) == (tapCount % 2 == 0);
}

void requireTaps(const DesignWish& wish, int tapCount) {
    require(tapCount <= wish.mostTaps.value_or(tapCount),
            "There would be " + Brindle::getLabel(tapCount) + " taps, more than the most that are allowed");
    require(isParityMet(wish, tapCount), "There would be " + Brindle::getLabel(tapCount) + " taps, which is no " +
                                             (tapCount % 2 == 0 ? "odd" : "even") + " number");
}

/// All edges in the order in which they have to ascend.
std::vector<double> getOrderedEdges(const DesignWish& wish) {
    const auto& pass = wish.passEdges;
    const auto& stop = wish.stopEdges;
    switch (wish.kind) {
    case Kind::LowPass:
        return {pass[0], stop[0]};
    case Kind::HighPass:
        return {stop[0], pass[0]};
    case Kind::BandPass:
        return {stop[0], pass[0], pass[1], stop[1]};
    default:
        return {pass[0], stop[0], stop[1], pass[1]};
    }
}

constexpr double closestEdges = 0.0001;

void checkEdges(const DesignWish& wish) {
    const bool hasTwo = wish.kind == Kind::BandPass || wish.kind == Kind::BandStop;
    require(wish.passEdges.size() == (hasTwo ? 2 : 1) && wish.stopEdges.size() == wish.passEdges.size(),
            hasTwo ? "The pass band and the stop band should have two edges each, LOW,HIGH"
                   : "The pass band and the stop band should have one edge each");
    std::vector<double> edges = getOrderedEdges(wish);
    constexpr std::array<const char*, 4> orders{
        "The edge of the pass band should lie below that of the stop band",
        "The edge of the stop band should lie below that of the pass band",
        "The edges of the pass band should lie between those of the stop band, in ascending order",
        "The edges of the stop band should lie between those of the pass band, in ascending order"};
    require(std::ranges::is_sorted(edges), orders.at(static_cast<std::size_t>(wish.kind)));
    edges.insert(edges.begin(), 0);
    edges.push_back(0.5);
    const auto areNear = [](double left, double right) { return right - left < closestEdges; };
    require(std::ranges::is_sorted(edges) && std::ranges::adjacent_find(edges, areNear) == edges.end(),
            "The edges should lie between 0 and half the sample rate, 0.0001 of it apart or more");
}

void checkRootRaisedCosine(const DesignWish& wish) {
    require(wish.symbolSamples >= 1 && wish.symbolSamples <= endlessTaps,
            "A symbol should have 1 to " + Brindle::getLabel(endlessTaps) + " samples");
    require(wish.rolloff >= 0 && wish.rolloff <= 1, "The roll-off should be 0 to 1");
    require(wish.span >= 1 && wish.span <= endlessTaps,
            "The span should be 1 to " + Brindle::getLabel(endlessTaps) + " symbols");
    const int tapCount = wish.span * wish.symbolSamples + 1;
    requireCount(tapCount, "The number of taps, span times samples of a symbol and one,");
    require(!wish.tapCount, "The number of taps follows from the span and the samples of a symbol");
    requireTaps(wish, tapCount);
}

} // namespace

std::optional<DesignWish::Kind> parseDesignKind(std::string_view text) {
    constexpr std::array<std::string_view, 5> names{"lowpass", "highpass", "bandpass", "bandstop", "rootraisedcosine"};
    const auto name = std::ranges::find(names, text);
    return name == names.end() ? std::nullopt : std::optional(static_cast<Kind>(name - names.begin()));
}

void checkWish(const DesignWish& wish) {
    require(wish.width >= 2 && wish.width <= widestCoefficient,
            "The width should be 2 to " + Brindle::getLabel(widestCoefficient) + " bits");
    requireCount(wish.mostTaps, "The largest number of taps");
    if (wish.kind == Kind::RootRaisedCosine) {
        checkRootRaisedCosine(wish);
        return;
    }
    checkEdges(wish);
    requireCount(wish.tapCount, "The number of taps");
    require(wish.tapCount || (wish.ripple && wish.attenuation),
            "Ripple and attenuation are needed to find the number of taps");
    require(!wish.ripple || (*wish.ripple > 0 && *wish.ripple <= 40),
            "The ripple should be more than 0 and at most 40 dB");
    require(!wish.attenuation || (*wish.attenuation > 0 && *wish.attenuation <= 200),
            "The attenuation should be more than 0 and at most 200 dB");
    if (wish.tapCount)
        requireTaps(wish, *wish.tapCount);
}

} // namespace Velmora
