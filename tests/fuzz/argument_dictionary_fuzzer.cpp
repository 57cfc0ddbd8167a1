#include <fuzz/Property.h>

#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace {

using Item = std::pair<std::string, std::string>; // key and value

void take(std::string_view& statement, std::string_view text) {
    require(statement.starts_with(text), "the statement is a dictionary of strings");
    statement.remove_prefix(text.size());
}

/// Takes a string in single quotes as Python reads it.
std::string takeString(std::string_view& statement) {
    take(statement, "'");
    std::string content;
    while (!statement.starts_with('\'')) {
        if (statement.starts_with('\\'))
            take(statement, "\\"), require(statement.starts_with('\''), "only quotes are escaped");
        require(!statement.empty(), "every string ends");
        require(std::string_view("\n\r\0", 3).find(statement.front()) == std::string_view::npos,
                "a string is one line");
        content += statement.front();
        statement.remove_prefix(1);
    }
    take(statement, "'");
    return content;
}

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
    const std::string statement = arguments.getStatement();
    std::string_view rest = statement;
    take(rest, "argDict = {  ");
    for (const auto& [key, value] : expected) {
        require(takeString(rest) == key, "keys are in order");
        take(rest, ": ");
        require(takeString(rest) == value, "scripts receive what the form holds");
        take(rest, &key == &expected.back().first ? "}" : ", ");
    }
    require(rest.empty(), "nothing follows the dictionary");
    return 0;
}
