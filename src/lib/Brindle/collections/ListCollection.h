#pragma once

#include <Brindle/collections/Collection.h>
#include <Brindle/collections/ListLocator.h>
#include <Brindle/collections/ListReverseLocator.h>

#include <list>
#include <memory>
#include <string>
#include <utility>

namespace Brindle {

/// The elements of a standard list. A list that is lent (a named one) is seen as it is at each walk and must outlive
/// the collection, its copies, everything derived from them and their locators. A list that is given away (a temporary
/// or moved one) is owned by all of these together.
template <typename T>
class ListCollection : public Collection<T> {
public:
    class Driver : public Collection<T>::Driver {
    public:
        explicit Driver(std::shared_ptr<const std::list<T>> list) : _list(std::move(list)) {}

        std::unique_ptr<typename Collection<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        unsigned long getCount() const override { return _list->size(); }
        bool hasCount(unsigned long n) const override { return _list->size() == n; }
        Locator<T> getLocator() const override { return ListLocator<T>(_list); }
        ReverseLocator<T> getReverseLocator() const override { return ListReverseLocator<T>(_list); }
        std::string _getLabel() const override { return "List"; }

    private:
        std::shared_ptr<const std::list<T>> _list;
    };

    ListCollection() = default;

    /// A view of the list, which is not owned.
    explicit ListCollection(const std::list<T>& list)
        : ListCollection(std::shared_ptr<const std::list<T>>(std::shared_ptr<void>(), &list)) {}
    explicit ListCollection(const std::list<T>&&) = delete;

    /// Owns the list.
    explicit ListCollection(std::list<T>&& list)
        : ListCollection(std::make_shared<const std::list<T>>(std::move(list))) {}

    /// Shares the list's ownership; a null pointer makes a null collection.
    explicit ListCollection(std::shared_ptr<const std::list<T>> list)
        : Collection<T>(list ? std::make_unique<Driver>(std::move(list)) : nullptr) {}
};

} // namespace Brindle
