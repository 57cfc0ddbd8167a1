#pragma once

#include <Brindle/collections/Locator.h>
#include <Brindle/core/Random.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// A cursor that meets the elements of another walk in a random order, each once. The other walk is taken to its end
/// when the locator is made, and the elements that are still to come are kept.
template <typename T>
class RandomLocator : public Locator<T> {
public:
    using KeySource = unsigned long (*)();

    class Driver : public Locator<T>::Driver {
    public:
        Driver(Locator<T> source, KeySource getKey) {
            for (; source.isValid(); source.progress())
                _remaining.emplace(getKey(), source.getCurrent());
        }

        std::unique_ptr<typename Locator<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        bool isValid() const override { return !_remaining.empty(); }
        T getCurrent() const override { return _remaining.empty() ? T() : _remaining.begin()->second; }
        void progress() override {
            if (!_remaining.empty())
                _remaining.erase(_remaining.begin());
        }
        std::string _getLabel() const override { return "Random"; }

    private:
        std::multimap<unsigned long, T> _remaining; // equal keys and equal elements are kept side by side
    };

    RandomLocator() = default;

    /// Elements come in the order of the keys that are drawn for them.
    explicit RandomLocator(Locator<T> source, KeySource getKey = &getRandomValue)
        : Locator<T>(std::make_unique<Driver>(std::move(source), getKey)) {}
};

} // namespace Brindle
