#include <velmora/signal/FilterDesign.h>

#include <velmora/signal/NumberText.h>
#include <velmora/signal/Prototype.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>

#include <algorithm>
#include <cmath>

namespace Velmora {

namespace {

using Brindle::getLabel;
using Parity = DesignWish::Parity;

std::vector<double> toReals(const std::vector<int>& integers) {
    return {integers.begin(), integers.end()};
}

/// How far figures are from what is wished: the larger of the errors over those that are allowed, 1 where it is just
/// met.
double getExcess(const DesignWish& wish, const BandFigures& figures) {
    const auto deviation = [](double ripple) { return std::pow(10, ripple / 20) - 1; };
    const double ofPass = wish.ripple ? deviation(figures.ripple) / deviation(*wish.ripple) : 0;
    const double ofStop = wish.attenuation ? std::pow(10, (*wish.attenuation - figures.attenuation) / 20) : 0;
    return std::max(ofPass, ofStop);
}

/// Transitions of different widths can leave a peak in the wider one.
bool hasOvershoot(const BandFigures& figures) {
    constexpr double unremarkable = 0.5; // dB
    return figures.overshoot > unremarkable;
}

/// One of several roundings of a number of taps.
struct Candidate {
    FilterDesign design;
    BandFigures unroundedFigures;
    double unroundedExcess = 0;
    double excess = 0;

    /// Nothing to be said against it.
    bool isGood() const { return design.isMet && !hasOvershoot(*design.figures); }
    bool isBetterThan(const Candidate& other) const {
        return isGood() != other.isGood() ? isGood() : excess < other.excess;
    }
    /// The same where the other one has fewer taps, of which those that are of use count for something.
    bool isPreferredTo(const Candidate& shorter) const {
        constexpr double useless = 1.5; // an iteration may go astray with more taps than it needs
        return isGood() || (!shorter.design.isMet && (design.isMet || excess < useless * shorter.excess));
    }
};

class Search {
public:
    explicit Search(const DesignWish& wish) : _wish(wish), _bands(getBands(wish)) {
        _prototypes.emplace_back(wish, _bands);
        const auto [narrowest, widest] = getTransitions(_bands);
        if (widest - narrowest < 1e-6)
            return;
        for (const double part : {0.5, 0.25, 0.0})
            _prototypes.emplace_back(wish, narrowTransitions(_bands, std::lerp(narrowest, widest, part)));
    }

    /// The numbers of taps that can be, in ascending order.
    std::vector<int> getTapCounts() const {
        std::vector<int> counts;
        const int first = _wish.tapCount.value_or(fewestTaps);
        const int last = _wish.tapCount.value_or(_wish.mostTaps.value_or(usualMostTaps));
        for (int count = first; count <= last; ++count) {
            const bool isEven = count % 2 == 0;
            if (isEven ? _wish.parity != Parity::Odd && !_bands.back().isPass : _wish.parity != Parity::Even)
                counts.push_back(count);
        }
        return counts;
    }

    /// The best filter of that many taps. None where the method finds none.
    std::optional<Candidate> getBest(int tapCount) const {
        std::optional<Candidate> best;
        for (const Prototype& prototype : _prototypes) {
            auto candidate = getBest(prototype, tapCount);
            if (candidate && (!best || candidate->isBetterThan(*best)))
                best = std::move(candidate);
            constexpr double hopeful = 0.8; // of the estimate: narrower transitions are not easier
            if ((best && best->isGood()) || tapCount < hopeful * estimateTapCount())
                break;
        }
        return best;
    }

    /// A number of taps that might do (Kaiser, 1974).
    int estimateTapCount() const {
        const AllowedErrors allowed = getAllowedErrors(_wish);
        const bool isKaiser = _wish.method == DesignWish::Method::Kaiser;
        const double error = isKaiser ? std::min(allowed.pass, allowed.stop) : std::sqrt(allowed.pass * allowed.stop);
        const double width = getTransitions(_bands).narrowest;
        const double estimate = (-20 * std::log10(error) - (isKaiser ? 8 : 13)) / (14.4 * width) + 1;
        return static_cast<int>(std::ceil(std::clamp(estimate, 1.0, 1e6)));
    }

private:
    /// The best of the roundings, as far as they are worth trying.
    std::optional<Candidate> getBest(const Prototype& prototype, int tapCount) const {
        std::optional<Candidate> best = getCandidate(prototype, tapCount, 0);
        for (int variant = 1; variant < Prototype::variantCount && isWorthTrying(best); ++variant) {
            auto candidate = getCandidate(prototype, tapCount, variant);
            if (candidate && (!best || candidate->isBetterThan(*best)))
                best = std::move(candidate);
        }
        return best;
    }

    /// An equiripple filter has the smallest error there is, which rounding can only make larger.
    bool isWorthTrying(const std::optional<Candidate>& best) const {
        constexpr double closeEnough = 2;
        constexpr double slack = 1.05; // of an iteration that ends before its limit
        if (!best || best->excess <= 1 || best->excess > closeEnough)
            return !best;
        return _wish.tapCount || _wish.method == DesignWish::Method::Kaiser || best->unroundedExcess <= slack;
    }

    std::optional<Candidate> getCandidate(const Prototype& prototype, int tapCount, int variant) const {
        auto taps = prototype.design(tapCount, variant);
        if (!taps)
            return std::nullopt;
        Candidate candidate;
        candidate.unroundedFigures = getBandFigures(*taps, _bands);
        candidate.unroundedExcess = getExcess(_wish, candidate.unroundedFigures);
        FilterDesign& design = candidate.design;
        design.rounded = scaleCoefficients(*taps, _wish.width, {});
        design.figures = getBandFigures(toReals(design.rounded.coefficients), _bands);
        design.unrounded = std::move(*taps);
        candidate.excess = getExcess(_wish, *design.figures);
        design.isMet = candidate.excess <= 1;
        return candidate;
    }

    const DesignWish& _wish;
    const std::vector<Band> _bands;
    std::vector<Prototype> _prototypes; // those after the first against overshoot
};

std::string getReached(const DesignWish& wish, const BandFigures& figures) {
    std::string text;
    if (wish.ripple)
        text += "a ripple of " + getFixedText(figures.ripple, 3) + " dB instead of " + getRealText(*wish.ripple);
    if (wish.ripple && wish.attenuation)
        text += " and ";
    if (wish.attenuation) {
        text += "an attenuation of " + getFixedText(figures.attenuation, 2) + " dB instead of " +
                getRealText(*wish.attenuation);
    }
    return text;
}

std::string getAdvice(const DesignWish& wish, const Search& search, const Candidate& longest) {
    const std::string count = getLabel(longest.design.unrounded.size());
    const std::string text = count + " taps reach " + getReached(wish, *longest.design.figures) + ". ";
    const std::string relax = "more ripple, less attenuation or wider transitions";
    if (longest.unroundedExcess <= 1)
        return text + "Without rounding they would do: allow more bits than " + getLabel(wish.width) + ", or " + relax +
               ".";
    const int estimate = search.estimateTapCount();
    const bool isHelpful = estimate > static_cast<int>(longest.design.unrounded.size());
    return text + "Allow more taps" + (isHelpful ? " (about " + getLabel(estimate) + ")" : "") + ", or " + relax + ".";
}

std::string getOvershootRemark(const BandFigures& figures) {
    return hasOvershoot(figures) ? "Between the bands the magnitude is up to " + getFixedText(figures.overshoot, 1) +
                                       " dB above that of the pass band; transitions of the same width avoid that."
                                 : "";
}

FilterDesign designRootRaisedCosine(const DesignWish& wish) {
    FilterDesign design;
    design.unrounded = getRootRaisedCosine(wish.symbolSamples, wish.rolloff, wish.span);
    design.rounded = scaleCoefficients(design.unrounded, wish.width, {});
    return design;
}

FilterDesign finish(const DesignWish& wish, const Search& search, Candidate candidate) {
    candidate.design.remark =
        candidate.design.isMet ? getOvershootRemark(*candidate.design.figures) : getAdvice(wish, search, candidate);
    return std::move(candidate.design);
}

} // namespace

FilterDesign designFilter(const DesignWish& wish) {
    checkWish(wish);
    if (wish.kind == DesignWish::Kind::RootRaisedCosine)
        return designRootRaisedCosine(wish);
    const Search search(wish);
    const std::vector<int> tapCounts = search.getTapCounts();
    if (tapCounts.empty()) {
        throw Brindle::located(Brindle::Critical("A symmetric filter of an even number of taps stops half the sample "
                                                 "rate: allow an odd number, or another pass band"),
                               BRINDLE_HERE);
    }
    // The estimate is within some taps of the truth, but for very short filters.
    const int hopeless = search.estimateTapCount() / 2;
    std::optional<Candidate> best;
    for (const int tapCount : tapCounts) {
        if (tapCount < hopeless && tapCount != tapCounts.back())
            continue;
        auto candidate = search.getBest(tapCount);
        if (!candidate)
            continue;
        const bool isGood = candidate->isGood();
        if (!best || candidate->isPreferredTo(*best))
            best = std::move(candidate);
        if (isGood)
            break;
    }
    if (!best)
        throw Brindle::located(Brindle::Critical("No filter of so many taps was found for these bands"), BRINDLE_HERE);
    return finish(wish, search, std::move(*best));
}

} // namespace Velmora
