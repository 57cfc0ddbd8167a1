#pragma once

#include <Brindle/collections/AssociatesLocator.h>
#include <Brindle/collections/Collection.h>
#include <Brindle/collections/MemberAccessor.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace Brindle {

/// One associate of type A for each element of type T of a source, in the source's order.
template <typename T, typename A>
class AssociatesCollection : public Collection<A> {
public:
    class Driver : public Collection<A>::Driver {
    public:
        Driver(Collection<T> source, Accessor<T, A> accessor)
            : _source(std::move(source)), _accessor(std::move(accessor)) {}

        std::unique_ptr<typename Collection<A>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        unsigned long getCount() const override { return _source.getCount(); }
        bool hasCount(unsigned long n) const override { return _source.hasCount(n); }
        bool isEmpty() const override { return _source.isEmpty(); }
        Locator<A> getLocator() const override { return AssociatesLocator<T, A>(_source.getLocator(), _accessor); }
        ReverseLocator<A> getReverseLocator() const override {
            return ReverseLocator<A>(AssociatesLocator<T, A>(_source.getReverseLocator(), _accessor));
        }
        std::string _getLabel() const override { return "Associates(" + _source._getLabel() + ")"; }

    private:
        Collection<T> _source;
        Accessor<T, A> _accessor;
    };

    AssociatesCollection() = default;
    AssociatesCollection(Collection<T> source, Accessor<T, A> accessor)
        : Collection<A>(std::make_unique<Driver>(std::move(source), std::move(accessor))) {}
};

/// What an accessor leads to from each element of a source.
template <typename T, typename A>
AssociatesCollection<T, A> associates(const Collection<T>& source, const Accessor<T, A>& accessor) {
    return AssociatesCollection<T, A>(source, accessor);
}

/// What a constant member function returns for each element of a source.
template <typename T, typename C, typename Result>
AssociatesCollection<T, std::remove_cvref_t<Result>> associates(const Collection<T>& source,
                                                                Result (C::*member)() const) {
    return {source, MemberAccessor<T, Result>(member)};
}

} // namespace Brindle
