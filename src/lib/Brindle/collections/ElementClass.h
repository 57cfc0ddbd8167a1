#pragma once

#include <type_traits>

namespace Brindle {

/// The class whose member functions an element of type T offers: T itself, or what T points at.
template <typename T>
using ElementClass = std::remove_pointer_t<T>;

/// True for an element that is a null pointer, which has no member functions to call.
template <typename T>
constexpr bool isNullPointer(const T& element) {
    if constexpr (std::is_pointer_v<T>)
        return element == nullptr;
    else
        return false;
}

} // namespace Brindle
