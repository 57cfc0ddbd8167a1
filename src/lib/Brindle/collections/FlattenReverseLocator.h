#pragma once

#include <Brindle/collections/FlattenLocatorDriver.h>
#include <Brindle/collections/ReverseLocator.h>

#include <memory>
#include <utility>

namespace Brindle {

/// Walks from last to first over the elements of each collection, of type C, that another reverse walk meets.
template <typename C>
class FlattenReverseLocator : public ReverseLocator<typename C::Element> {
public:
    using Driver = FlattenLocatorDriver<C, Backwards>;

    explicit FlattenReverseLocator(ReverseLocator<C> outer)
        : ReverseLocator<typename C::Element>(std::make_unique<Driver>(std::move(outer))) {}
};

} // namespace Brindle
