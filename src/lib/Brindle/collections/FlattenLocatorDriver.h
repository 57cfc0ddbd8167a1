#pragma once

#include <Brindle/collections/Direction.h>
#include <Brindle/collections/Locator.h>

#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// Walks in the direction D over the elements of collections of type C, which an outer walk meets in the same
/// direction.
template <typename C, typename D>
class FlattenLocatorDriver : public Locator<typename C::Element>::Driver {
public:
    using Element = typename C::Element;

    explicit FlattenLocatorDriver(Locator<C> outer)
        : _outer(std::move(outer)), _inner(D::getLocator(_outer.getCurrent())) {
        skipEmpty();
    }

    std::unique_ptr<typename Locator<Element>::Driver> getClone() const override {
        return std::make_unique<FlattenLocatorDriver>(*this);
    }
    bool isValid() const override { return _inner.isValid(); }
    Element getCurrent() const override { return _inner.getCurrent(); }
    void progress() override {
        _inner.progress();
        skipEmpty();
    }
    std::string _getLabel() const override { return "Flatten(" + _outer._getLabel() + ")"; }

private:
    void skipEmpty() {
        while (!_inner.isValid() && _outer.isValid()) {
            _outer.progress();
            _inner = D::getLocator(_outer.getCurrent());
        }
    }

    Locator<C> _outer;
    Locator<Element> _inner; // of the collection at which the outer walk stands
};

} // namespace Brindle
