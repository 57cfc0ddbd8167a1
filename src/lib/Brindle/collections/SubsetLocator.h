#pragma once

#include <Brindle/collections/Locator.h>
#include <Brindle/collections/Predicate.h>

#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// Stops only at the elements of another walk that a predicate accepts.
template <typename T>
class SubsetLocator : public Locator<T> {
public:
    class Driver : public Locator<T>::Driver {
    public:
        Driver(Locator<T> source, Predicate<T> predicate)
            : _source(std::move(source)), _predicate(std::move(predicate)) {
            skipRejected();
        }

        std::unique_ptr<typename Locator<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        bool isValid() const override { return _source.isValid(); }
        T getCurrent() const override { return _source.getCurrent(); }
        void progress() override {
            _source.progress();
            skipRejected();
        }
        std::string _getLabel() const override { return "Subset(" + _source._getLabel() + ")"; }

    private:
        void skipRejected() {
            while (_source.isValid() && !_predicate.accept(_source.getCurrent()))
                _source.progress();
        }

        Locator<T> _source;
        Predicate<T> _predicate;
    };

    SubsetLocator(Locator<T> source, Predicate<T> predicate)
        : Locator<T>(std::make_unique<Driver>(std::move(source), std::move(predicate))) {}
};

} // namespace Brindle
