#pragma once

#include <Quillon/Object.h>

#include <concepts>
#include <memory>

namespace Quillon {

/// Ends a managed object: `preDestroy`, then deletion.
struct Destroyer {
    void operator()(Object* object) const {
        object->preDestroy();
        delete object;
    }
};

/// The owner of a managed object, whose class may still be incomplete.
template <class T>
using Owned = std::unique_ptr<T, Destroyer>;

/// Creates a managed object in three steps: `T::preCreate`, the constructor and `postCreate` each get the arguments. An
/// exception of any step passes through; an object that was constructed by then ends as every other, with `preDestroy`.
template <std::derived_from<Object> T, class... Arguments>
[[nodiscard]] Owned<T> create(const Arguments&... arguments) {
    T::preCreate(arguments...);
    Owned<T> object(new T(arguments...));
    object->postCreate(arguments...);
    return object;
}

} // namespace Quillon
