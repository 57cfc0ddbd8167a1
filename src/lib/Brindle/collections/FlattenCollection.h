#pragma once

#include <Brindle/collections/Collection.h>
#include <Brindle/collections/FlattenLocator.h>
#include <Brindle/collections/FlattenReverseLocator.h>

#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// The elements of all collections, of type C, that a source holds, one collection after the other.
template <typename C>
class FlattenCollection : public Collection<typename C::Element> {
public:
    using Element = typename C::Element;

    class Driver : public Collection<Element>::Driver {
    public:
        explicit Driver(Collection<C> source) : _source(std::move(source)) {}

        std::unique_ptr<typename Collection<Element>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        unsigned long getCount() const override {
            unsigned long count = 0;
            for (Locator<C> outer = _source.getLocator(); outer.isValid(); outer.progress())
                count += outer.getCurrent().getCount();
            return count;
        }
        Locator<Element> getLocator() const override { return FlattenLocator<C>(_source.getLocator()); }
        ReverseLocator<Element> getReverseLocator() const override {
            return FlattenReverseLocator<C>(_source.getReverseLocator());
        }
        std::string _getLabel() const override { return "Flatten(" + _source._getLabel() + ")"; }

    private:
        Collection<C> _source;
    };

    FlattenCollection() = default;
    explicit FlattenCollection(Collection<C> source)
        : Collection<Element>(std::make_unique<Driver>(std::move(source))) {}
};

/// The elements of all collections that a source holds.
template <typename C>
FlattenCollection<C> flatten(const Collection<C>& source) {
    return FlattenCollection<C>(source);
}

} // namespace Brindle
