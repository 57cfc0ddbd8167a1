#include <velmora/ArgumentDictionary.h>

#include <Brindle/Exception.h>

namespace Velmora {

ArgumentDictionary& ArgumentDictionary::add(std::string_view key, std::string_view value) {
    using namespace std::string_view_literals;
    if (value.find_first_of("'\\\n\r\0"sv) != value.npos) {
        throw Brindle::located(Brindle::InvalidRequest("Unsupported character in value"), _caller,
                               {{"key", std::string(key)}, {"value", std::string(value)}});
    }
    if (!_items.empty())
        _items += "', '";
    _items.append(key).append("': '").append(value);
    return *this;
}

std::string ArgumentDictionary::getStatement() const {
    return "argDict = {  '" + _items + "'}";
}

} // namespace Velmora
