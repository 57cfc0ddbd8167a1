#pragma once

#include <iterator>

namespace Brindle {

/// Walks from the first element to the last. An iterator stands at an element and at none behind it, so that those
/// which were passed may go; the list's end says that no element is left.
struct Forwards {
    static auto getFirst(const auto& list) { return list.begin(); }
    static auto getNext(const auto&, auto iterator) { return std::next(iterator); }
    static auto getLocator(const auto& collection) { return collection.getLocator(); }
};

/// Walks from the last element to the first, in the same way.
struct Backwards {
    static auto getFirst(const auto& list) { return list.empty() ? list.end() : std::prev(list.end()); }
    static auto getNext(const auto& list, auto iterator) {
        return iterator == list.begin() ? list.end() : std::prev(iterator);
    }
    static auto getLocator(const auto& collection) { return collection.getReverseLocator(); }
};

} // namespace Brindle
