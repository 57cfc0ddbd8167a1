#include <Brindle/core/Exception.h>

#include <algorithm>

namespace Brindle {

Exception::Exception(std::string message) : _message(std::move(message)) {}

std::string Exception::getField(std::string_view name) const {
    const auto field = std::ranges::find(_fields, name, &Field::first);
    return field == _fields.end() ? std::string() : field->second;
}

void Exception::addField(std::string name, std::string value) {
    _fields.emplace_back(std::move(name), std::move(value));
}

} // namespace Brindle
