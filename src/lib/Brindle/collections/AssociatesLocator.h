#pragma once

#include <Brindle/collections/Accessor.h>
#include <Brindle/collections/Locator.h>

#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// Meets the associate, of type A, of each element of another walk over elements of type T.
template <typename T, typename A>
class AssociatesLocator : public Locator<A> {
public:
    class Driver : public Locator<A>::Driver {
    public:
        Driver(Locator<T> source, Accessor<T, A> accessor)
            : _source(std::move(source)), _accessor(std::move(accessor)) {}

        std::unique_ptr<typename Locator<A>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        bool isValid() const override { return _source.isValid(); }
        A getCurrent() const override { return _source.isValid() ? _accessor.getAssociate(_source.getCurrent()) : A(); }
        void progress() override { _source.progress(); }
        std::string _getLabel() const override { return "Associates(" + _source._getLabel() + ")"; }

    private:
        Locator<T> _source;
        Accessor<T, A> _accessor;
    };

    AssociatesLocator(Locator<T> source, Accessor<T, A> accessor)
        : Locator<A>(std::make_unique<Driver>(std::move(source), std::move(accessor))) {}
};

} // namespace Brindle
