#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Sealwork {

/// One expression of a directive: `name` or `name = value`.
struct DirectiveExpression {
    std::string name;  ///< In lower case.
    std::string value; ///< Without its double quotes or parentheses; empty when there is none.
};

/// What a line says behind "`protect" or "`pragma protect", in front of which only white space may stand; none when it
/// is no such line.
std::optional<std::string_view> getDirectiveBody(std::string_view line);

/// The expressions of a directive's body, or of a value in parentheses, which are separated by commas. None when the
/// text is anything else.
std::optional<std::vector<DirectiveExpression>> parseExpressions(std::string_view text);

/// True for a line that announces a block of an envelope, in either language: white space, "`protect" or "`pragma
/// protect" and, as the line's last word, "key_block" or "data_block".
bool isBlockDirective(std::string_view line);

/// True for a line that is a directive of that one name ("begin_protected"), in either language and any case.
bool isDirective(std::string_view line, std::string_view name);

/// Walks the lines of a text that hold a backtick, the only ones that can be directives. The text must outlive it.
class BacktickLines {
public:
    struct Line {
        std::size_t begin = 0; ///< Offset in the text.
        std::size_t end = 0;   ///< Offset behind its line feed, or the size of the text.
        std::string_view text; ///< Without the line feed.
    };

    explicit BacktickLines(std::string_view text) : _text(text) {}

    std::optional<Line> next();

private:
    std::string_view _text;
    std::size_t _position = 0;
};

} // namespace Sealwork
