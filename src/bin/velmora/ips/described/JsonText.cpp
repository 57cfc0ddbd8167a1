#include <velmora/ips/described/JsonText.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <utility>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

namespace Velmora {

namespace {

constexpr std::size_t deepest = 16;

[[noreturn]] void refuse(const std::string& message, int line) {
    throw Brindle::withFields(Brindle::Critical(message), {{"line", std::to_string(line)}});
}

/// What the reader takes its characters from; it counts the lines. The names are the reader's.
class LineCountingStream {
public:
    using Ch = char;

    explicit LineCountingStream(std::string_view text) : _text(text) {}

    Ch Peek() const { return _place < _text.size() ? _text[_place] : '\0'; }
    Ch Take() {
        const Ch character = Peek();
        _line += character == '\n';
        ++_place;
        return character;
    }
    std::size_t Tell() const { return _place; }
    int getLine() const { return _line; }

    // Only a reader that writes into its text needs these.
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    std::size_t PutEnd(Ch*) { return 0; }

private:
    const std::string_view _text;
    std::size_t _place = 0;
    int _line = 1;
};

/// Builds the value from what the reader tells. The names are the reader's; a false return ends it.
class ValueBuilder {
public:
    explicit ValueBuilder(const LineCountingStream& stream) : _stream(stream) {}

    bool Null() { return add(makeValue(JsonValue::Kind::Null)); }
    bool Bool(bool) { return add(makeValue(JsonValue::Kind::Boolean)); }
    // Numbers come as texts: the reader's own conversion of zeros with many digits is undefined.
    bool RawNumber(const char* text, rapidjson::SizeType size, bool) {
        JsonValue value = makeValue(JsonValue::Kind::Number);
        const auto result = std::from_chars(text, text + size, value.number);
        if (result.ec != std::errc())
            refuse("Number " + Brindle::inQuotes({text, size}) + " cannot be held", _stream.getLine());
        return add(std::move(value));
    }
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }
    bool String(const char* text, rapidjson::SizeType size, bool) {
        JsonValue value = makeValue(JsonValue::Kind::Text);
        value.text.assign(text, size);
        return add(std::move(value));
    }
    bool StartObject() { return open(JsonValue::Kind::Object); }
    bool Key(const char* text, rapidjson::SizeType size, bool) {
        auto& members = _open.back().members;
        const std::string name(text, size);
        const auto earlier = std::ranges::find(members, name, &JsonMember::name);
        if (earlier != members.end()) {
            refuse("Member " + Brindle::inQuotes(name) + " is given in line " + std::to_string(earlier->line) +
                       " already, remove one of them",
                   _stream.getLine());
        }
        members.push_back({name, _stream.getLine(), {}});
        return true;
    }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool StartArray() { return open(JsonValue::Kind::List); }
    bool EndArray(rapidjson::SizeType) { return close(); }

    JsonValue takeResult() { return std::move(_result); }

private:
    JsonValue makeValue(JsonValue::Kind kind) const {
        JsonValue value;
        value.kind = kind;
        value.line = _stream.getLine();
        return value;
    }

    bool open(JsonValue::Kind kind) {
        if (_open.size() == deepest)
            refuse("Values are nested deeper than " + std::to_string(deepest), _stream.getLine());
        _open.push_back(makeValue(kind));
        return true;
    }

    bool close() {
        JsonValue value = std::move(_open.back());
        _open.pop_back();
        return add(std::move(value));
    }

    bool add(JsonValue value) {
        if (_open.empty())
            _result = std::move(value);
        else if (_open.back().kind == JsonValue::Kind::Object)
            _open.back().members.back().value = std::move(value);
        else
            _open.back().elements.push_back(std::move(value));
        return true;
    }

    const LineCountingStream& _stream;
    std::vector<JsonValue> _open; // objects and lists that the reader is in
    JsonValue _result;
};

int lineAt(std::string_view text, std::size_t place) {
    return 1 + static_cast<int>(std::ranges::count(text.substr(0, place), '\n'));
}

} // namespace

JsonValue parseJson(std::string_view text) {
    if (text.starts_with(Brindle::byteOrderMark))
        refuse("The text begins with a byte order mark, save it without one", 1);
    if (const auto nul = text.find('\0'); nul != text.npos)
        refuse("The text holds a NUL byte", lineAt(text, nul));
    LineCountingStream stream(text);
    ValueBuilder builder(stream);
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag;
    if (const auto result = reader.Parse<flags>(stream, builder); result.IsError())
        refuse(std::string("No JSON: ") + rapidjson::GetParseError_En(result.Code()), lineAt(text, result.Offset()));
    return builder.takeResult();
}

} // namespace Velmora
