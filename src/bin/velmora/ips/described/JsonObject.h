#pragma once

#include <velmora/ips/described/JsonValue.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Velmora {

/// Throws Brindle::Critical with the message and the field "line".
[[noreturn]] void refuseLine(const std::string& message, int line);

/// What a text may be. It never holds a control character, but for line feeds.
struct TextRule {
    std::size_t longest = 1000; ///< Characters.
    bool mayBeEmpty = false;
    bool mayHaveLineFeeds = false;
};

/// The text that a value should be, which messages call `what`.
const std::string& requireText(const JsonValue& value, const std::string& what, const TextRule& rule = {});

/// The object that a JSON value should be, for a reader that asks for the members that it knows. Whatever is not as it
/// should be is refused with Brindle::Critical and the field "line".
class JsonObject {
public:
    /// `what` is what messages call it: "the form". The value is kept, not owned.
    JsonObject(const JsonValue& value, std::string what);

    int getLine() const { return _value.line; }
    /// What messages call it from now on.
    void setName(const std::string& what) { _what = what; }
    /// As messages call a member: "'minimum' of the row 'Depth'".
    std::string getName(std::string_view member) const;

    /// Null when the object has no such member.
    const JsonValue* find(std::string_view member);
    const JsonValue& get(std::string_view member);
    const std::string& getText(std::string_view member, const TextRule& rule = {});
    /// Empty when there is none.
    std::string findText(std::string_view member, const TextRule& rule = {});
    double getNumber(std::string_view member, double least, double most);
    int getInteger(std::string_view member, int least, int most);
    /// Of one element at least and `most` at most.
    const std::vector<JsonValue>& getList(std::string_view member, std::size_t most);

    /// Refuses a member that was not asked for.
    void finish() const;
    /// Refuses the value of a member that the object has.
    [[noreturn]] void refuse(std::string_view member, const std::string& expectation);

private:
    const JsonValue& _value;
    std::string _what;
    std::vector<std::string> _known; // members that were asked for
};

} // namespace Velmora
