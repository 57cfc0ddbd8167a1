#pragma once

#include <Brindle/core/ClonePointer.h>

#include <memory>
#include <utility>

namespace Brindle {

/// Leads from an element of type T to its associate of type A. A null accessor leads to the associate's default value.
template <typename T, typename A>
class Accessor {
public:
    /// What a kind of accessor has to provide.
    class Driver {
    public:
        virtual ~Driver() = default;

        virtual std::unique_ptr<Driver> getClone() const = 0;
        virtual A getAssociate(const T& element) const = 0;

    protected:
        Driver() = default;
        Driver(const Driver&) = default;
        Driver& operator=(const Driver&) = default;
    };

    Accessor() = default;
    explicit Accessor(std::unique_ptr<Driver> driver) : _driver(std::move(driver)) {}

    A getAssociate(const T& element) const { return _driver ? _driver->getAssociate(element) : A(); }

private:
    ClonePointer<Driver> _driver;
};

} // namespace Brindle
