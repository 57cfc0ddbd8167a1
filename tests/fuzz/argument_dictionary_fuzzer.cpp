#include <fuzz/Property.h>

#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace {

using Item = std::pair<std::string, std::string>; // key and value

/// Reads a statement as Python does that holds nothing but single-quoted strings.
class StatementReader {
public:
    explicit StatementReader(std::string_view statement) : _rest(statement) {}

    std::vector<Item> read() {
        take("argDict = {  ");
        std::vector<Item> items;
        do {
            std::string key = takeString();
            take(": ");
            items.emplace_back(std::move(key), takeString());
        } while (takeIf(", "));
        take("}");
        require(_rest.empty(), "nothing follows the dictionary");
        return items;
    }

private:
    bool takeIf(std::string_view text) {
        if (!_rest.starts_with(text))
            return false;
        _rest.remove_prefix(text.size());
        return true;
    }

    void take(std::string_view text) { require(takeIf(text), "the statement is a dictionary of strings"); }

    std::string takeString() {
        take("'");
        std::string content;
        while (!takeIf("'")) {
            const bool isQuote = takeIf("\\");
            require(!_rest.empty(), "every string ends");
            const char character = _rest.front();
            require(!isQuote || character == '\'', "only quotes are escaped");
            require(character != '\n' && character != '\r' && character != '\0', "a string is one line of text");
            content += character;
            _rest.remove_prefix(1);
        }
        return content;
    }

    std::string_view _rest;
};

/// Adds the value in one of the ways there are; the value that a script must receive.
std::string addValue(Velmora::ArgumentDictionary& arguments, const std::string& key, const std::string& value) {
    if (value.starts_with('"')) {
        arguments.addQuoted(key, value.substr(1));
        return value + '"';
    }
    arguments.add(key, value);
    return value;
}

} // namespace

/// The input is values of a form, separated by 0xFF, which is no byte of UTF-8.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    Velmora::ArgumentDictionary arguments;
    arguments.addLiteral("%%PROGRAM%%", "(others => '0')");
    std::vector<Item> expected{{"%%PROGRAM%%", "(others => '0')"}};
    for (bool more = true; more;) {
        const auto end = text.find('\xFF');
        const std::string value(text.substr(0, end));
        more = end != text.npos;
        text.remove_prefix(more ? end + 1 : text.size());

        const std::string key = "%%VALUE" + std::to_string(expected.size()) + "%%";
        try {
            expected.emplace_back(key, addValue(arguments, key, value));
        } catch (const Brindle::InvalidRequest& exception) {
            require(exception.getField("key") == key, "a refusal names the key");
        }
    }
    require(StatementReader(arguments.getStatement()).read() == expected, "scripts receive what the form holds");
    return 0;
}
