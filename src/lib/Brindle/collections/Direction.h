#pragma once

namespace Brindle {

/// Walks from the first element to the last.
struct Forwards {
    static auto getBegin(const auto& list) { return list.begin(); }
    static auto getEnd(const auto& list) { return list.end(); }
    static auto getLocator(const auto& collection) { return collection.getLocator(); }
};

/// Walks from the last element to the first.
struct Backwards {
    static auto getBegin(const auto& list) { return list.rbegin(); }
    static auto getEnd(const auto& list) { return list.rend(); }
    static auto getLocator(const auto& collection) { return collection.getReverseLocator(); }
};

} // namespace Brindle
