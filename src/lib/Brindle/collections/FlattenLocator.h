#pragma once

#include <Brindle/collections/FlattenLocatorDriver.h>

#include <memory>
#include <utility>

namespace Brindle {

/// Walks over the elements of each collection, of type C, that another walk meets.
template <typename C>
class FlattenLocator : public Locator<typename C::Element> {
public:
    using Driver = FlattenLocatorDriver<C, Forwards>;

    explicit FlattenLocator(Locator<C> outer)
        : Locator<typename C::Element>(std::make_unique<Driver>(std::move(outer))) {}
};

} // namespace Brindle
