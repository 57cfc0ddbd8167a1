#pragma once

#include <Brindle/collections/Locator.h>

#include <memory>
#include <set>
#include <string>
#include <utility>

namespace Brindle {

/// Meets each distinct element of another walk once, where it first occurs. Elements are told apart by `std::less`; the
/// distinct ones that were met are kept.
template <typename T>
class ReduceLocator : public Locator<T> {
public:
    class Driver : public Locator<T>::Driver {
    public:
        explicit Driver(Locator<T> source) : _source(std::move(source)) { skipDelivered(); }

        std::unique_ptr<typename Locator<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        bool isValid() const override { return _source.isValid(); }
        T getCurrent() const override { return _source.getCurrent(); }
        void progress() override {
            _source.progress();
            skipDelivered();
        }
        std::string _getLabel() const override { return "Reduce(" + _source._getLabel() + ")"; }

    private:
        /// Goes to the next element that was not met before, and remembers it.
        void skipDelivered() {
            while (_source.isValid() && !_delivered.insert(_source.getCurrent()).second)
                _source.progress();
        }

        Locator<T> _source;
        std::set<T> _delivered;
    };

    explicit ReduceLocator(Locator<T> source) : Locator<T>(std::make_unique<Driver>(std::move(source))) {}
};

} // namespace Brindle
