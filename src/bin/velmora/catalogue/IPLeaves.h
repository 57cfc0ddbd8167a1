#pragma once

#include <Brindle/collections/Collection.h>
#include <Brindle/collections/Strings.h>

#include <list>
#include <string>

namespace Velmora {

class IPLeaf;

/// The IPs of the catalogue in catalogue order: a view that sees the list as it is when it is walked.
class IPLeaves : public Brindle::Collection<IPLeaf*> {
public:
    IPLeaves() = default;
    IPLeaves(Brindle::Collection<IPLeaf*> leaves) : Collection(std::move(leaves)) {}

    /// The companies of all leaves, each once, in the order of their first occurrence.
    Brindle::strings getCompanies() const;
    /// The variants of all leaves, each once, in the order of their first occurrence.
    Brindle::strings getVariants() const;
    IPLeaves getFromCompany(const std::string& company) const;
    IPLeaves getFromCategory(const std::string& category) const;
    IPLeaves getForVariant(const std::string& variant) const;
};

} // namespace Velmora
