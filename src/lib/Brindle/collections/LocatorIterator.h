#pragma once

#include <Brindle/collections/Locator.h>

#include <cstddef>
#include <iterator>
#include <utility>

namespace Brindle {

/// Makes a locator an input iterator, for range-for and the standard algorithms; its end is `std::default_sentinel`.
template <typename T>
class LocatorIterator {
public:
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using iterator_concept = std::input_iterator_tag;

    explicit LocatorIterator(Locator<T> locator) : _locator(std::move(locator)) {}

    T operator*() const { return _locator.getCurrent(); }
    LocatorIterator& operator++() {
        _locator.progress();
        return *this;
    }
    void operator++(int) { _locator.progress(); }
    bool operator==(std::default_sentinel_t) const { return !_locator.isValid(); }

private:
    Locator<T> _locator;
};

} // namespace Brindle
