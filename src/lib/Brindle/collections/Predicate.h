#pragma once

#include <Brindle/core/ClonePointer.h>

#include <memory>
#include <utility>

namespace Brindle {

/// Decides upon elements of type T. A null predicate accepts none.
template <typename T>
class Predicate {
public:
    /// What a kind of predicate has to provide.
    class Driver {
    public:
        virtual ~Driver() = default;

        virtual std::unique_ptr<Driver> getClone() const = 0;
        virtual bool accept(const T& element) const = 0;

    protected:
        Driver() = default;
        Driver(const Driver&) = default;
        Driver& operator=(const Driver&) = default;
    };

    Predicate() = default;
    explicit Predicate(std::unique_ptr<Driver> driver) : _driver(std::move(driver)) {}

    bool accept(const T& element) const { return _driver && _driver->accept(element); }

private:
    ClonePointer<Driver> _driver;
};

} // namespace Brindle
