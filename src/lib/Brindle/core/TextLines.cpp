#include <Brindle/core/TextLines.h>

#include <algorithm>

namespace Brindle {

std::optional<std::string_view> TextLines::next() {
    const auto end = _rest.find('\n');
    if (end == _rest.npos)
        return std::nullopt;
    const auto line = _rest.substr(0, end);
    _rest.remove_prefix(end + 1);
    ++_lineNumber;
    return line;
}

std::optional<std::string_view> TextLines::nextOrLast() {
    auto line = next();
    if (line || _rest.empty())
        return line;
    ++_lineNumber;
    return take(_rest.size());
}

std::string_view TextLines::take(std::size_t size) {
    const auto taken = _rest.substr(0, size);
    _rest.remove_prefix(taken.size());
    return taken;
}

std::optional<std::string_view> getFieldValue(std::optional<std::string_view> line, std::string_view field) {
    if (!line || !line->starts_with(field))
        return std::nullopt;
    return line->substr(field.size());
}

std::size_t getLineNumber(std::string_view text, std::size_t offset) {
    return static_cast<std::size_t>(std::ranges::count(text.substr(0, offset), '\n')) + 1;
}

std::string withLineFeeds(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t begin = 0; begin < text.size();) {
        const auto pair = text.find("\r\n", begin);
        result += text.substr(begin, pair - begin);
        if (pair == text.npos)
            break;
        result += '\n';
        begin = pair + 2;
    }
    return result;
}

} // namespace Brindle
