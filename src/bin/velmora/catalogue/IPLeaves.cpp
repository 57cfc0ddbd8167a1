#include <velmora/catalogue/IPLeaves.h>

#include <velmora/catalogue/IPLeaf.h>

#include <Brindle/collections/AssociatesCollection.h>
#include <Brindle/collections/FlattenCollection.h>
#include <Brindle/collections/ReduceCollection.h>
#include <Brindle/collections/SubsetCollection.h>

namespace Velmora {

Brindle::strings IPLeaves::getCompanies() const {
    return Brindle::reduce(Brindle::associates(*this, &IPLeaf::getCompany));
}

Brindle::strings IPLeaves::getVariants() const {
    return Brindle::reduce(Brindle::flatten(Brindle::associates(*this, &IPLeaf::getVariants)));
}

IPLeaves IPLeaves::getFromCompany(const std::string& company) const {
    return Brindle::subset(*this, &IPLeaf::isFromCompany, company);
}

IPLeaves IPLeaves::getFromCategory(const std::string& category) const {
    return Brindle::subset(*this, &IPLeaf::isFromCategory, category);
}

IPLeaves IPLeaves::getForVariant(const std::string& variant) const {
    return Brindle::subset(*this, &IPLeaf::isForVariant, variant);
}

} // namespace Velmora
