#include <Sealwork/envelope/EnvelopeDirective.h>

#include <Brindle/core/Text.h>

#include <algorithm>

namespace Sealwork {

namespace {

bool isWordCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

/// Takes the white space in front off; false when there is none.
bool skipWhiteSpace(std::string_view& text) {
    const auto begin = std::min(text.find_first_not_of(Brindle::asciiSpaces), text.size());
    text.remove_prefix(begin);
    return begin > 0;
}

/// Takes the text in front off; false when it is not there.
bool skip(std::string_view& text, std::string_view expected) {
    if (!text.starts_with(expected))
        return false;
    text.remove_prefix(expected.size());
    return true;
}

std::string_view takeWord(std::string_view& text) {
    const auto end = std::ranges::find_if_not(text, isWordCharacter);
    const auto word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

/// Takes what lies in front of the closing character, and that character too.
std::optional<std::string_view> takeUntil(std::string_view& text, char closing) {
    const auto end = text.find(closing);
    if (end == text.npos)
        return std::nullopt;
    const auto taken = text.substr(0, end);
    text.remove_prefix(end + 1);
    return taken;
}

/// A word, a text in double quotes or a list in parentheses.
std::optional<std::string_view> takeValue(std::string_view& text) {
    if (skip(text, "\""))
        return takeUntil(text, '"');
    if (skip(text, "("))
        return takeUntil(text, ')');
    const auto word = takeWord(text);
    return word.empty() ? std::nullopt : std::optional(word);
}

std::optional<DirectiveExpression> takeExpression(std::string_view& text) {
    skipWhiteSpace(text);
    DirectiveExpression expression{Brindle::toLower(takeWord(text)), {}};
    if (expression.name.empty())
        return std::nullopt;
    skipWhiteSpace(text);
    if (!skip(text, "="))
        return expression;
    skipWhiteSpace(text);
    const auto value = takeValue(text);
    if (!value)
        return std::nullopt;
    expression.value = *value;
    skipWhiteSpace(text);
    return expression;
}

bool endsWithWord(std::string_view text, std::string_view word) {
    if (!text.ends_with(word))
        return false;
    text.remove_suffix(word.size());
    return text.empty() || !isWordCharacter(text.back());
}

} // namespace

std::optional<std::string_view> getDirectiveBody(std::string_view line) {
    skipWhiteSpace(line);
    if (!skip(line, "`"))
        return std::nullopt;
    if (skip(line, "pragma") && !skipWhiteSpace(line))
        return std::nullopt;
    if (!skip(line, "protect") || line.empty() || isWordCharacter(line.front()))
        return std::nullopt;
    return line;
}

std::optional<std::vector<DirectiveExpression>> parseExpressions(std::string_view text) {
    std::vector<DirectiveExpression> expressions;
    do {
        auto expression = takeExpression(text);
        if (!expression)
            return std::nullopt;
        expressions.push_back(std::move(*expression));
    } while (skip(text, ","));
    return text.empty() ? std::optional(std::move(expressions)) : std::nullopt;
}

bool isBlockDirective(std::string_view line) {
    auto body = getDirectiveBody(line);
    if (!body)
        return false;
    const auto words = Brindle::trimmed(*body, Brindle::asciiSpaces);
    return endsWithWord(words, "key_block") || endsWithWord(words, "data_block");
}

bool isDirective(std::string_view line, std::string_view name) {
    const auto body = getDirectiveBody(line);
    const auto expressions = body ? parseExpressions(*body) : std::nullopt;
    return expressions && expressions->size() == 1 && expressions->front().name == name;
}

std::optional<BacktickLines::Line> BacktickLines::next() {
    const auto backtick = _text.find('`', _position);
    if (backtick == _text.npos)
        return std::nullopt;
    Line line;
    line.begin = _text.rfind('\n', backtick) + 1; // `npos` + 1 is 0, the first line.
    const auto end = std::min(_text.find('\n', backtick), _text.size());
    line.text = _text.substr(line.begin, end - line.begin);
    line.end = std::min(end + 1, _text.size());
    _position = line.end;
    return line;
}

} // namespace Sealwork
