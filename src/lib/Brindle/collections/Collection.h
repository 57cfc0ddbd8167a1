#pragma once

#include <Brindle/collections/ListReverseLocator.h>
#include <Brindle/collections/Locator.h>
#include <Brindle/collections/LocatorIterator.h>
#include <Brindle/collections/RandomLocator.h>
#include <Brindle/collections/ReverseLocator.h>
#include <Brindle/core/ClonePointer.h>

#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// A sequence of elements of type T that is looked at through a driver: a list, or a view that is derived from other
/// collections and holds no elements of its own. A view sees what lies underneath as it is when it is walked. T can be
/// copied and has a default value. A null collection is an empty one.
///
/// Counting and indexing walk the elements unless the driver knows better, so loops use range-for, locators or
/// BRINDLE_FOR_EACH.
template <typename T>
class Collection {
public:
    using Element = T;

    /// What a kind of collection has to provide; the operations with a default walk no further than they need.
    class Driver {
    public:
        virtual ~Driver() = default;

        virtual std::unique_ptr<Driver> getClone() const = 0;
        virtual unsigned long getCount() const;
        virtual bool hasCount(unsigned long n) const;
        virtual bool isEmpty() const { return !getLocator().isValid(); }
        virtual T getFirst() const { return getLocator().getCurrent(); }
        virtual T getLast() const { return getReverseLocator().getCurrent(); }
        virtual T getAt(unsigned long index) const;
        virtual Locator<T> getLocator() const = 0;
        /// By default the elements of a forward walk are kept and then met in reverse.
        virtual ReverseLocator<T> getReverseLocator() const;
        virtual RandomLocator<T> getRandomLocator() const { return RandomLocator<T>(getLocator()); }
        virtual std::string _getLabel() const = 0;

    protected:
        Driver() = default;
        Driver(const Driver&) = default;
        Driver& operator=(const Driver&) = default;
    };

    Collection() = default;
    explicit Collection(std::unique_ptr<Driver> driver) : _driver(std::move(driver)) {}

    unsigned long getCount() const { return _driver ? _driver->getCount() : 0; }

    /// True when there are exactly n elements; the walk ends at the first element too many.
    bool hasCount(unsigned long n) const { return _driver ? _driver->hasCount(n) : n == 0; }
    bool isEmpty() const { return !_driver || _driver->isEmpty(); }

    /// The first or last element; the type's default value when the collection is empty.
    T getFirst() const { return _driver ? _driver->getFirst() : T(); }
    T getLast() const { return _driver ? _driver->getLast() : T(); }

    /// The element at an index that starts at 0; the type's default value past the end.
    T getAt(unsigned long index) const { return _driver ? _driver->getAt(index) : T(); }

    /// A cursor at the first element, at the last element, or at the first of a random order.
    Locator<T> getLocator() const { return _driver ? _driver->getLocator() : Locator<T>(); }
    ReverseLocator<T> getReverseLocator() const { return _driver ? _driver->getReverseLocator() : ReverseLocator<T>(); }
    RandomLocator<T> getRandomLocator() const { return _driver ? _driver->getRandomLocator() : RandomLocator<T>(); }

    LocatorIterator<T> begin() const { return LocatorIterator<T>(getLocator()); }
    std::default_sentinel_t end() const { return std::default_sentinel; }

    /// The kinds of collection that are nested in this one, such as "Reduce(Associates(List))", for diagnostics; empty
    /// for a null collection.
    std::string _getLabel() const { return _driver ? _driver->_getLabel() : std::string(); }

private:
    ClonePointer<Driver> _driver;
};

/// Whether the elements of the one collection come before those of the other, as in a dictionary.
template <typename T>
bool operator<(const Collection<T>& left, const Collection<T>& right) {
    Locator<T> other = right.getLocator();
    for (Locator<T> one = left.getLocator(); one.isValid(); one.progress(), other.progress()) {
        if (!other.isValid() || other.getCurrent() < one.getCurrent())
            return false;
        if (one.getCurrent() < other.getCurrent())
            return true;
    }
    return other.isValid();
}

template <typename T>
unsigned long Collection<T>::Driver::getCount() const {
    unsigned long count = 0;
    for (Locator<T> locator = getLocator(); locator.isValid(); locator.progress())
        ++count;
    return count;
}

template <typename T>
bool Collection<T>::Driver::hasCount(unsigned long n) const {
    Locator<T> locator = getLocator();
    for (; n > 0 && locator.isValid(); --n)
        locator.progress();
    return n == 0 && !locator.isValid();
}

template <typename T>
T Collection<T>::Driver::getAt(unsigned long index) const {
    Locator<T> locator = getLocator();
    for (; index > 0 && locator.isValid(); --index)
        locator.progress();
    return locator.getCurrent();
}

template <typename T>
ReverseLocator<T> Collection<T>::Driver::getReverseLocator() const {
    auto elements = std::make_shared<std::list<T>>();
    for (Locator<T> locator = getLocator(); locator.isValid(); locator.progress())
        elements->push_back(locator.getCurrent());
    return ListReverseLocator<T>(std::move(elements));
}

} // namespace Brindle
