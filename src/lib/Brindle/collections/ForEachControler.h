#pragma once

#include <Brindle/collections/Collection.h>

namespace Brindle {

/// Drives a loop over a collection: each call of `isAlive` puts the next element into the loop variable. The walk is
/// one element ahead of the variable, so the loop may remove the element that the variable holds from a list, but not
/// the one after it.
template <typename T>
class ForEachControler {
public:
    /// The variable must outlive the controler.
    ForEachControler(T& variable, const Collection<T>& collection)
        : _variable(variable), _locator(collection.getLocator()) {}

    /// True when there was one more element.
    bool isAlive() {
        if (!_locator.isValid())
            return false;
        _variable = _locator.getCurrent();
        _locator.progress();
        return true;
    }

    /// Sets the flag and gives the loop variable's first value.
    static T start() {
        _continue = true;
        return T();
    }

    /// True from the start of a loop over elements of type T until one ends.
    static inline bool _continue = false;

private:
    T& _variable;
    Locator<T> _locator;
};

} // namespace Brindle
