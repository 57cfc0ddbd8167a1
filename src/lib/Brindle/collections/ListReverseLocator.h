#pragma once

#include <Brindle/collections/ListLocatorDriver.h>
#include <Brindle/collections/ReverseLocator.h>

#include <list>
#include <memory>
#include <utility>

namespace Brindle {

/// Walks over a standard list from its last element to its first.
template <typename T>
class ListReverseLocator : public ReverseLocator<T> {
public:
    using Driver = ListLocatorDriver<T, Backwards>;

    /// The list must not be null.
    explicit ListReverseLocator(std::shared_ptr<const std::list<T>> list)
        : ReverseLocator<T>(std::make_unique<Driver>(std::move(list))) {}
};

} // namespace Brindle
