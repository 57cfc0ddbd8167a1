#include <velmora/ips/described/JsonObject.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Velmora {

namespace {

using Brindle::inQuotes;

/// Of a UTF-8 text.
std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U; }));
}

} // namespace

void refuseLine(const std::string& message, int line) {
    throw Brindle::withFields(Brindle::Critical(message), {{"line", std::to_string(line)}});
}

const std::string& requireText(const JsonValue& value, const std::string& what, const TextRule& rule) {
    const auto refuse = [&](const std::string& expectation) {
        refuseLine(what + " should be " + expectation, value.line);
    };
    if (value.kind != JsonValue::Kind::Text)
        refuse("a text");
    if (value.text.empty() && !rule.mayBeEmpty)
        refuse("a text that is not empty");
    if (countCharacters(value.text) > rule.longest)
        refuse("a text of at most " + std::to_string(rule.longest) + " characters");
    const auto isForbidden = [&rule](char c) { return Brindle::isControl(c) && (c != '\n' || !rule.mayHaveLineFeeds); };
    if (std::ranges::any_of(value.text, isForbidden))
        refuse("a text without control characters");
    return value.text;
}

JsonObject::JsonObject(const JsonValue& value, std::string what) : _value(value), _what(std::move(what)) {
    if (value.kind != JsonValue::Kind::Object)
        refuseLine("An object should stand here: " + _what, value.line);
}

std::string JsonObject::getName(std::string_view member) const {
    return inQuotes(member) + " of " + _what;
}

const JsonValue* JsonObject::find(std::string_view member) {
    _known.emplace_back(member);
    const auto found = std::ranges::find(_value.members, member, &JsonMember::name);
    return found != _value.members.end() ? &found->value : nullptr;
}

const JsonValue& JsonObject::get(std::string_view member) {
    if (const JsonValue* value = find(member))
        return *value;
    refuseLine("Member " + getName(member) + " is missing", _value.line);
}

const std::string& JsonObject::getText(std::string_view member, const TextRule& rule) {
    return requireText(get(member), getName(member), rule);
}

std::string JsonObject::findText(std::string_view member, const TextRule& rule) {
    const JsonValue* value = find(member);
    return value ? requireText(*value, getName(member), rule) : std::string();
}

double JsonObject::getNumber(std::string_view member, double least, double most) {
    const JsonValue& value = get(member);
    if (value.kind != JsonValue::Kind::Number || value.number < least || value.number > most)
        refuse(member, "a number from " + Brindle::getLabel(least) + " to " + Brindle::getLabel(most));
    return value.number;
}

int JsonObject::getInteger(std::string_view member, int least, int most) {
    const JsonValue& value = get(member);
    const bool isWhole = value.kind == JsonValue::Kind::Number && value.number == std::trunc(value.number);
    if (!isWhole || value.number < least || value.number > most)
        refuse(member, "a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    return static_cast<int>(value.number);
}

const std::vector<JsonValue>& JsonObject::getList(std::string_view member, std::size_t most) {
    const JsonValue& value = get(member);
    if (value.kind != JsonValue::Kind::List || value.elements.empty() || value.elements.size() > most)
        refuse(member, "a list of 1 to " + std::to_string(most) + " elements");
    return value.elements;
}

void JsonObject::finish() const {
    for (const JsonMember& member : _value.members) {
        if (std::ranges::find(_known, member.name) != _known.end())
            continue;
        std::string known;
        for (const std::string& name : _known)
            known += (known.empty() ? "" : ", ") + name;
        refuseLine("Unknown member " + getName(member.name) + ", known are " + known, member.line);
    }
}

void JsonObject::refuse(std::string_view member, const std::string& expectation) {
    refuseLine(getName(member) + " should be " + expectation, get(member).line);
}

} // namespace Velmora
