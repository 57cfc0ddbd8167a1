#pragma once

#include <string>
#include <vector>

namespace Velmora {

struct JsonMember;

/// A value of a JSON text, which knows where it stands.
struct JsonValue {
    enum class Kind { Null, Boolean, Number, Text, List, Object };

    Kind kind = Kind::Null;
    int line = 0; ///< Where it begins, from 1.
    double number = 0;
    std::string text; ///< UTF-8.
    std::vector<JsonValue> elements;
    std::vector<JsonMember> members; ///< In the order of the text; no two have the same name.
};

/// A member of an object.
struct JsonMember {
    std::string name;
    int line = 0; ///< Of its name.
    JsonValue value;
};

} // namespace Velmora
