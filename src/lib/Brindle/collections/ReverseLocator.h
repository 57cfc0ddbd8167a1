#pragma once

#include <Brindle/collections/Locator.h>

#include <utility>

namespace Brindle {

/// A cursor that walks from a collection's last element to its first.
template <typename T>
class ReverseLocator : public Locator<T> {
public:
    using Locator<T>::Locator;

    /// States that the given locator walks backwards.
    explicit ReverseLocator(Locator<T> locator) : Locator<T>(std::move(locator)) {}
};

} // namespace Brindle
