#pragma once

#include <Brindle/collections/ElementClass.h>
#include <Brindle/collections/Predicate.h>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace Brindle {

/// Accepts the elements for which a constant member function says true when it is called with the kept datum: Parameter
/// is the function's declared parameter type, a value or a constant reference. The element is an object or a pointer to
/// one; a null pointer is not accepted.
template <typename T, typename Parameter>
class MemberDatumPredicate : public Predicate<T> {
public:
    using Datum = std::remove_cvref_t<Parameter>;
    using Member = bool (ElementClass<T>::*)(Parameter) const;

    class Driver : public Predicate<T>::Driver {
    public:
        Driver(Member member, Datum datum) : _member(member), _datum(std::move(datum)) {}

        std::unique_ptr<typename Predicate<T>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        /// The same predicate with another datum.
        std::unique_ptr<typename Predicate<T>::Driver> getClone(Datum datum) const {
            return std::make_unique<Driver>(_member, std::move(datum));
        }
        // Inlined, GCC 12 warns that the call of a member, which might be virtual, reads past the end of a small
        // object.
        [[gnu::noinline]] bool accept(const T& element) const override {
            return !isNullPointer(element) && std::invoke(_member, element, _datum);
        }

    private:
        Member _member;
        Datum _datum;
    };

    MemberDatumPredicate(Member member, Datum datum)
        : Predicate<T>(std::make_unique<Driver>(member, std::move(datum))) {}
};

/// Elements are pointers unless the element type is named.
template <typename C, typename Parameter, typename D>
MemberDatumPredicate(bool (C::*)(Parameter) const, D) -> MemberDatumPredicate<C*, Parameter>;

} // namespace Brindle
