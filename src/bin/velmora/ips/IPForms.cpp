#include <velmora/catalogue/IPForms.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/ips/bridge/APBToSPWLeaf.h>
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
#include <vector>

namespace Velmora {

namespace {

struct KnownForm {
    std::function<bool(const IPLeaf&)> fits;
    IPForm (*make)(IPLeaf& page);
};

template <class Leaf>
IPForm make(IPLeaf& page) {
    auto* leaf = new Leaf(&page);
    return {leaf, leaf};
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

} // namespace Velmora
