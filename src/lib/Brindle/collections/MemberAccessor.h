#pragma once

#include <Brindle/collections/Accessor.h>
#include <Brindle/collections/ElementClass.h>

#include <functional>
#include <memory>
#include <type_traits>

namespace Brindle {

/// The associate is what a constant member function of the element returns: Result is its declared return type, a value
/// or a constant reference. The element is an object or a pointer to one; a null pointer's associate is the default
/// value.
template <typename T, typename Result>
class MemberAccessor : public Accessor<T, std::remove_cvref_t<Result>> {
public:
    using Associate = std::remove_cvref_t<Result>;
    using Member = Result (ElementClass<T>::*)() const;

    class Driver : public Accessor<T, Associate>::Driver {
    public:
        explicit Driver(Member member) : _member(member) {}

        std::unique_ptr<typename Accessor<T, Associate>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        // Inlined, GCC 12 warns that the call of a member, which might be virtual, reads past the end of a small
        // object.
        [[gnu::noinline]] Associate getAssociate(const T& element) const override {
            return isNullPointer(element) ? Associate() : std::invoke(_member, element);
        }

    private:
        Member _member;
    };

    explicit MemberAccessor(Member member) : Accessor<T, Associate>(std::make_unique<Driver>(member)) {}
};

/// Elements are pointers unless the element type is named.
template <typename C, typename Result>
MemberAccessor(Result (C::*)() const) -> MemberAccessor<C*, Result>;

} // namespace Brindle
