#pragma once

#include <Brindle/core/ClonePointer.h>

#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// A cursor that walks over elements of type T, one at a time and without going back. A copy is a second cursor that
/// stands at the same element and goes on by itself. A null locator is a walk over nothing.
///
/// A locator stays usable when the collection that it came from is gone; the list that lies underneath must live on,
/// unless the collection owned it. Elements that are added to that list ahead of the cursor are met; the element under
/// the cursor must not be removed.
template <typename T>
class Locator {
public:
    /// What a kind of walk has to provide.
    class Driver {
    public:
        virtual ~Driver() = default;

        virtual std::unique_ptr<Driver> getClone() const = 0;
        virtual bool isValid() const = 0;
        virtual T getCurrent() const = 0;
        virtual void progress() = 0;
        virtual std::string _getLabel() const = 0;

    protected:
        Driver() = default;
        Driver(const Driver&) = default;
        Driver& operator=(const Driver&) = default;
    };

    Locator() = default;
    explicit Locator(std::unique_ptr<Driver> driver) : _driver(std::move(driver)) {}

    /// False once every element has been passed.
    bool isValid() const { return _driver && _driver->isValid(); }

    /// The element at which the cursor stands; the type's default value when the locator is not valid.
    T getCurrent() const { return _driver ? _driver->getCurrent() : T(); }

    /// Goes to the next element; does nothing when the locator is not valid.
    void progress() {
        if (_driver)
            _driver->progress();
    }

    /// The kinds of walk that are nested in this one, for diagnostics; empty for a null locator.
    std::string _getLabel() const { return _driver ? _driver->_getLabel() : std::string(); }

private:
    ClonePointer<Driver> _driver;
};

} // namespace Brindle
