#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Brindle {

/// Walks a text line by line. The text must outlive the walk.
class TextLines {
public:
    explicit TextLines(std::string_view text) : _rest(text) {}

    /// The next line without its line feed; none when no line feed is left.
    std::optional<std::string_view> next();
    /// The same, but the last line may lack its line feed; none at the end of the text.
    std::optional<std::string_view> nextOrLast();
    /// What follows the lines taken so far.
    std::string_view getRest() const { return _rest; }
    /// The next `size` characters, fewer at the end of the text.
    std::string_view take(std::size_t size);
    /// The number of the line taken last, from 1.
    std::size_t getLineNumber() const { return _lineNumber; }

private:
    std::string_view _rest;
    std::size_t _lineNumber = 0;
};

/// What follows the field's name ("Key-Id: ") in the line; none when the line does not begin with it.
std::optional<std::string_view> getFieldValue(std::optional<std::string_view> line, std::string_view field);

/// The number, from 1, of the line in which the character at the offset stands.
std::size_t getLineNumber(std::string_view text, std::size_t offset);

/// The text with every pair of carriage return and line feed turned into a line feed.
std::string withLineFeeds(std::string_view text);

} // namespace Brindle
