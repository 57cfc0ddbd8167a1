#pragma once

#include <Brindle/collections/Collection.h>
#include <Brindle/collections/MemberDatumPredicate.h>
#include <Brindle/collections/SubsetLocator.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace Brindle {

/// The elements of a source that a predicate accepts, in the source's order.
template <typename T>
class SubsetCollection : public Collection<T> {
public:
    class Driver : public Collection<T>::Driver {
    public:
        Driver(Collection<T> source, Predicate<T> predicate)
            : _source(std::move(source)), _predicate(std::move(predicate)) {}

        std::unique_ptr<typename Collection<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        Locator<T> getLocator() const override { return SubsetLocator<T>(_source.getLocator(), _predicate); }
        ReverseLocator<T> getReverseLocator() const override {
            return ReverseLocator<T>(SubsetLocator<T>(_source.getReverseLocator(), _predicate));
        }
        std::string _getLabel() const override { return "Subset(" + _source._getLabel() + ")"; }

    private:
        Collection<T> _source;
        Predicate<T> _predicate;
    };

    SubsetCollection() = default;
    SubsetCollection(Collection<T> source, Predicate<T> predicate)
        : Collection<T>(std::make_unique<Driver>(std::move(source), std::move(predicate))) {}
};

/// The elements of a source that a predicate accepts.
template <typename T>
SubsetCollection<T> subset(const Collection<T>& source, const std::type_identity_t<Predicate<T>>& predicate) {
    return SubsetCollection<T>(source, predicate);
}

/// The elements of a source for which a constant member function says true when it is called with the datum.
template <typename T, typename C, typename Parameter>
SubsetCollection<T> subset(const Collection<T>& source, bool (C::*member)(Parameter) const,
                           std::type_identity_t<std::remove_cvref_t<Parameter>> datum) {
    return SubsetCollection<T>(source, MemberDatumPredicate<T, Parameter>(member, std::move(datum)));
}

} // namespace Brindle
