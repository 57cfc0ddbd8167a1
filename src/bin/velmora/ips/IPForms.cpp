#include <velmora/catalogue/IPForms.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/ips/bridge/APBToSPWLeaf.h>
#include <velmora/ips/described/DescribedLeaf.h>
#include <velmora/ips/described/FormDescriptionFile.h>
#include <velmora/ips/filters/MacFirLeaf.h>
#include <velmora/ips/filters/SystolicLeaf.h>
#include <velmora/ips/filters/TransposeDualLeaf.h>
#include <velmora/ips/filters/TransposeLeaf.h>
#include <velmora/ips/filters/TransposeSymmetricLeaf.h>
#include <velmora/ips/scopes/ScopeLeaf.h>
#include <velmora/ips/scopes/StartupScopeLeaf.h>
#include <velmora/ips/serdes/SERDESLeaf.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace Velmora {

namespace {

struct KnownForm {
    std::function<bool(const IPLeaf&)> fits;
    IPForm (*make)(IPLeaf& page);
};

template <class Leaf, class... Arguments>
IPForm makeLeaf(IPLeaf& page, Arguments&&... arguments) {
    auto* leaf = new Leaf(&page, std::forward<Arguments>(arguments)...);
    return {leaf, leaf};
}

template <class Leaf>
IPForm make(IPLeaf& page) {
    return makeLeaf<Leaf>(page);
}

/// The first one that fits an IP is its form.
const std::vector<KnownForm>& getKnownForms() {
    static const std::vector<KnownForm> forms{
        {&IPLeaf::isOVSystolic, make<SystolicLeaf>},
        {&IPLeaf::isOVTranspose, make<TransposeLeaf>},
        {&IPLeaf::isOVTransposeDual, make<TransposeDualLeaf>},
        {&IPLeaf::isOVTransposeSymmetric, make<TransposeSymmetricLeaf>},
        {&IPLeaf::isOVMacFir, make<MacFirLeaf>},
        {&IPLeaf::isOVScope, make<ScopeLeaf>},
        {&IPLeaf::isOVStartupScope, make<StartupScopeLeaf>},
        {&IPLeaf::isOVSERDES, make<SERDESLeaf>},
        {&IPLeaf::isAPBToSPW, make<APBToSPWLeaf>},
    };
    return forms;
}

} // namespace

std::optional<IPForm> makeForm(IPLeaf& page) {
    const std::vector<KnownForm>& forms = getKnownForms();
    const auto form = std::ranges::find_if(forms, [&page](const KnownForm& known) { return known.fits(page); });
    return form != forms.end() ? std::optional(form->make(page)) : std::nullopt;
}

std::optional<IPForm> makeDescribedForm(IPLeaf& page) {
    auto description = DescribedLeaf::readDescription(page.getDescription());
    return description ? std::optional(makeLeaf<DescribedLeaf>(page, std::move(*description))) : std::nullopt;
}

bool knowsForm(const IPLeaf& page) {
    return std::ranges::any_of(getKnownForms(), [&page](const KnownForm& known) { return known.fits(page); });
}

bool bringsForm(const IPDescription& ip) {
    return hasFormDescription(ip);
}

void requireFormDescription(const IPDescription& ip) {
    DescribedLeaf::readDescription(ip);
}

} // namespace Velmora
