#pragma once

#include <Brindle/collections/ListLocatorDriver.h>

#include <list>
#include <memory>
#include <utility>

namespace Brindle {

/// Walks over a standard list from its first element to its last.
template <typename T>
class ListLocator : public Locator<T> {
public:
    using Driver = ListLocatorDriver<T, Forwards>;

    /// The list must not be null.
    explicit ListLocator(std::shared_ptr<const std::list<T>> list)
        : Locator<T>(std::make_unique<Driver>(std::move(list))) {}
};

} // namespace Brindle
