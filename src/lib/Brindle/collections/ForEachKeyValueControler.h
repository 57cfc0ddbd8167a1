#pragma once

#include <map>
#include <utility>

namespace Brindle {

/// Drives a loop over a standard map: each call of `isAlive` puts the next key and value into the loop variables.
template <typename K, typename V>
class ForEachKeyValueControler {
public:
    /// The variables and the map must outlive the controler.
    ForEachKeyValueControler(K& key, V& value, const std::map<K, V>& map)
        : _key(key), _value(value), _map(map), _current(map.begin()) {}
    ForEachKeyValueControler(K&, V&, const std::map<K, V>&&) = delete;

    /// True when there was one more pair.
    bool isAlive() {
        if (_current == _map.end())
            return false;
        _key = _current->first;
        _value = _current->second;
        ++_current;
        return true;
    }

    /// Sets the flag and gives the loop variables' first values.
    static std::pair<K, V> start() {
        _continue = true;
        return {};
    }

    /// True from the start of a loop over such maps until one ends.
    static inline bool _continue = false;

private:
    K& _key;
    V& _value;
    const std::map<K, V>& _map;
    typename std::map<K, V>::const_iterator _current;
};

} // namespace Brindle
