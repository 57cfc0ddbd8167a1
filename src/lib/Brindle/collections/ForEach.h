#pragma once

#include <Brindle/collections/ForEachControler.h>
#include <Brindle/collections/ForEachKeyValueControler.h>

#include <type_traits>

namespace Brindle {

/// The controler of a loop over a collection of the given type, or a type derived from one.
template <typename C>
using ForEachControlerOf = ForEachControler<typename std::remove_cvref_t<C>::Element>;

/// The controler of a loop over a standard map of the given type.
template <typename M>
using ForEachKeyValueControlerOf =
    ForEachKeyValueControler<typename std::remove_cvref_t<M>::key_type, typename std::remove_cvref_t<M>::mapped_type>;

} // namespace Brindle

#define BRINDLE_JOIN_EXPANDED(left, right) left##right
#define BRINDLE_JOIN(left, right) BRINDLE_JOIN_EXPANDED(left, right)
#define BRINDLE_CONTROLER BRINDLE_JOIN(controlerOfLine, __LINE__)

/// Runs the statement that follows for each element of a collection, in a variable that it declares:
/// `BRINDLE_FOR_EACH(leaf, leaves) { ... }`. `break` and `continue` are those of an ordinary loop. The inner loop
/// walks; the outer ones declare the variables and run once, also when the walk was broken off.
#define BRINDLE_FOR_EACH(variable, ...)                                                                                \
    for (auto variable = ::Brindle::ForEachControlerOf<decltype(__VA_ARGS__)>::start();                                \
         ::Brindle::ForEachControlerOf<decltype(__VA_ARGS__)>::_continue;                                              \
         ::Brindle::ForEachControlerOf<decltype(__VA_ARGS__)>::_continue = false)                                      \
        for (::Brindle::ForEachControlerOf<decltype(__VA_ARGS__)> BRINDLE_CONTROLER(variable, __VA_ARGS__);            \
             BRINDLE_CONTROLER.isAlive();)

/// The same over the keys and values of a named standard map, in the order of its keys.
#define BRINDLE_FOR_EACH_KEY_VALUE(key, value, ...)                                                                    \
    for (auto [key, value] = ::Brindle::ForEachKeyValueControlerOf<decltype(__VA_ARGS__)>::start();                    \
         ::Brindle::ForEachKeyValueControlerOf<decltype(__VA_ARGS__)>::_continue;                                      \
         ::Brindle::ForEachKeyValueControlerOf<decltype(__VA_ARGS__)>::_continue = false)                              \
        for (::Brindle::ForEachKeyValueControlerOf<decltype(__VA_ARGS__)> BRINDLE_CONTROLER(key, value, __VA_ARGS__);  \
             BRINDLE_CONTROLER.isAlive();)
