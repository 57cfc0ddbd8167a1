#pragma once

#include <Brindle/collections/ReverseLocator.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Brindle {

/// Meets what a ReduceLocator meets, from the last to the first. It keeps a cursor for each and no elements.
template <typename T>
class ReduceReverseLocator : public ReverseLocator<T> {
public:
    class Driver : public Locator<T>::Driver {
    public:
        /// Walks the whole source, whose label is kept.
        explicit Driver(Locator<T> source) : _sourceLabel(source._getLabel()) {
            for (std::set<T> met; source.isValid(); source.progress())
                if (met.insert(source.getCurrent()).second)
                    _ahead.push_back(source);
        }

        std::unique_ptr<typename Locator<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        bool isValid() const override { return !_ahead.empty(); }
        T getCurrent() const override { return _ahead.empty() ? T() : _ahead.back().getCurrent(); }
        void progress() override {
            if (!_ahead.empty())
                _ahead.pop_back();
        }
        std::string _getLabel() const override { return "Reduce(" + _sourceLabel + ")"; }

    private:
        std::string _sourceLabel;
        std::vector<Locator<T>> _ahead; ///< The next one is the last.
    };

    explicit ReduceReverseLocator(Locator<T> source) : ReverseLocator<T>(std::make_unique<Driver>(std::move(source))) {}
};

} // namespace Brindle
