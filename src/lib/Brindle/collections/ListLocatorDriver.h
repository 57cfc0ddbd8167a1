#pragma once

#include <Brindle/collections/Direction.h>
#include <Brindle/collections/Locator.h>

#include <list>
#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// Walks over a standard list in the direction D.
template <typename T, typename D>
class ListLocatorDriver : public Locator<T>::Driver {
public:
    /// The list must not be null.
    explicit ListLocatorDriver(std::shared_ptr<const std::list<T>> list)
        : _list(std::move(list)), _current(D::getFirst(*_list)) {}

    std::unique_ptr<typename Locator<T>::Driver> getClone() const override {
        return std::make_unique<ListLocatorDriver>(*this);
    }
    bool isValid() const override { return _current != _list->end(); }
    T getCurrent() const override { return ListLocatorDriver::isValid() ? *_current : T(); }
    void progress() override {
        if (ListLocatorDriver::isValid())
            _current = D::getNext(*_list, _current);
    }
    std::string _getLabel() const override { return "List"; }

private:
    std::shared_ptr<const std::list<T>> _list;
    typename std::list<T>::const_iterator _current;
};

} // namespace Brindle
