#pragma once

#include <memory>
#include <utility>

namespace Brindle {

/// Owns a polymorphic driver, or nothing, and has the meaning of a value: a copy owns a clone. The driver class has
/// `std::unique_ptr<D> getClone() const`.
template <typename D>
class ClonePointer {
public:
    ClonePointer() = default;
    explicit ClonePointer(std::unique_ptr<D> driver) : _driver(std::move(driver)) {}
    ClonePointer(const ClonePointer& other) : _driver(other._driver ? other._driver->getClone() : nullptr) {}
    ClonePointer(ClonePointer&&) noexcept = default;
    ~ClonePointer() = default;

    ClonePointer& operator=(const ClonePointer& other) {
        _driver = std::move(ClonePointer(other)._driver);
        return *this;
    }
    ClonePointer& operator=(ClonePointer&&) noexcept = default;

    explicit operator bool() const noexcept { return _driver != nullptr; }
    D* operator->() noexcept { return _driver.get(); }
    const D* operator->() const noexcept { return _driver.get(); }

private:
    std::unique_ptr<D> _driver;
};

} // namespace Brindle
