#pragma once

#include <Brindle/collections/Collection.h>
#include <Brindle/collections/ReduceLocator.h>
#include <Brindle/collections/ReduceReverseLocator.h>

#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// The distinct elements of a source in the order of their first occurrence. Walked in reverse it gives the same
/// elements in the opposite order; where an element first occurs is known only from the front, so making a reverse
/// locator walks the whole source.
template <typename T>
class ReduceCollection : public Collection<T> {
public:
    class Driver : public Collection<T>::Driver {
    public:
        explicit Driver(Collection<T> source) : _source(std::move(source)) {}

        std::unique_ptr<typename Collection<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        bool isEmpty() const override { return _source.isEmpty(); }
        T getFirst() const override { return _source.getFirst(); }
        Locator<T> getLocator() const override { return ReduceLocator<T>(_source.getLocator()); }
        ReverseLocator<T> getReverseLocator() const override { return ReduceReverseLocator<T>(_source.getLocator()); }
        std::string _getLabel() const override { return "Reduce(" + _source._getLabel() + ")"; }

    private:
        Collection<T> _source;
    };

    ReduceCollection() = default;
    explicit ReduceCollection(Collection<T> source) : Collection<T>(std::make_unique<Driver>(std::move(source))) {}
};

/// The distinct elements of a source.
template <typename T>
ReduceCollection<T> reduce(const Collection<T>& source) {
    return ReduceCollection<T>(source);
}

} // namespace Brindle
