#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

namespace Velmora {

ArgumentDictionary& ArgumentDictionary::add(std::string_view key, std::string_view value) {
    using namespace std::string_view_literals;
    if (value.find_first_of("'\\\n\r\0"sv) != value.npos) {
        throw Brindle::withFields(Brindle::InvalidRequest("Unsupported character in value"),
                                  {{"key", std::string(key)}, {"value", std::string(value)}});
    }
    append(key, value);
    return *this;
}

ArgumentDictionary& ArgumentDictionary::add(std::string_view key, int value) {
    append(key, std::to_string(value));
    return *this;
}

ArgumentDictionary& ArgumentDictionary::addQuoted(std::string_view key, std::string_view value) {
    return add(key, std::string("\"").append(value).append("\""));
}

ArgumentDictionary& ArgumentDictionary::addLiteral(std::string_view key, std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '\'' || character == '\\')
            escaped += '\\';
        escaped += character;
    }
    append(key, escaped);
    return *this;
}

void ArgumentDictionary::append(std::string_view key, std::string_view text) {
    if (!_items.empty())
        _items += "', '";
    _items.append(key).append("': '").append(text);
}

std::string ArgumentDictionary::getStatement() const {
    return "argDict = {  '" + _items + "'}";
}

} // namespace Velmora
