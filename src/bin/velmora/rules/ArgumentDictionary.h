#pragma once

#include <string>
#include <string_view>

namespace Velmora {

/// The arguments of one generation, in the order in which they are added, as the one Python statement that defines
/// them: `argDict = {  '%%KEY%%': 'value', ...}`. Values are UTF-8 and stand in the statement verbatim.
class ArgumentDictionary {
public:
    /// Appends an argument. A value that could end its string or break its line (single quote, backslash, line break,
    /// NUL) is refused with Brindle::InvalidRequest "Unsupported character in value", which has the fields "key" and
    /// "value".
    ArgumentDictionary& add(std::string_view key, std::string_view value);

    ArgumentDictionary& add(std::string_view key, int value);
    /// Appends an argument between double quotes: the script receives a VHDL string literal.
    ArgumentDictionary& addQuoted(std::string_view key, std::string_view value);
    /// Appends an argument whose text is the program's own or was looked at: it may hold single quotes and backslashes,
    /// but no line break and no NUL.
    ArgumentDictionary& addLiteral(std::string_view key, std::string_view text);

    /// The statement, without a line end.
    std::string getStatement() const;

private:
    void append(std::string_view key, std::string_view text);

    std::string _items;
};

} // namespace Velmora
