#include <velmora/rules/ConfigurationValue.h>

#include <Brindle/core/Text.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace Velmora::ConfigurationValue {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view digits = "0123456789abcdef";

/// Characters by the letter that stands for them behind a backslash.
constexpr std::array escapes{std::pair{'"', '"'}, std::pair{'\\', '\\'}, std::pair{'n', '\n'}, std::pair{'r', '\r'},
                             std::pair{'t', '\t'}};

bool isBlank(char character) {
    return blanks.find(character) != blanks.npos;
}

bool canStandAsItIs(std::string_view text) {
    return text.empty() || (!isBlank(text.front()) && !isBlank(text.back()) && text.front() != '"' &&
                            std::ranges::none_of(text, Brindle::isControl));
}

std::string quoted(std::string_view text) {
    std::string value = "\"";
    for (const char character : text) {
        const auto escape = std::ranges::find(escapes, character, [](const auto& pair) { return pair.second; });
        if (escape != escapes.end())
            (value += '\\') += escape->first;
        else if (Brindle::isControl(character))
            ((value += "\\x") += digits[static_cast<std::size_t>(character) / 16]) +=
                digits[static_cast<std::size_t>(character) % 16];
        else
            value += character;
    }
    return value += '"';
}

/// The control character of two hexadecimal digits.
std::optional<char> toControl(std::string_view number) {
    unsigned code = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), code, 16);
    if (number.size() != 2 || error != std::errc() || end != number.data() + number.size() || code >= 0x80)
        return std::nullopt;
    const auto character = static_cast<char>(code);
    return Brindle::isControl(character) ? std::optional(character) : std::nullopt;
}

/// Takes the character that an escape stands for off the front, behind its backslash.
std::optional<char> takeEscaped(std::string_view& value) {
    if (value.starts_with('x')) {
        const auto control = toControl(value.substr(1, 2));
        value.remove_prefix(std::min<std::size_t>(3, value.size()));
        return control;
    }
    const auto escape = value.empty()
                            ? escapes.end()
                            : std::ranges::find(escapes, value.front(), [](const auto& p) { return p.first; });
    if (escape == escapes.end())
        return std::nullopt;
    value.remove_prefix(1);
    return escape->second;
}

/// Takes a text between double quotes off the front, and the blanks behind it.
std::optional<std::string> takeQuoted(std::string_view& value) {
    std::string text;
    value.remove_prefix(1);
    while (!value.empty()) {
        const char character = value.front();
        value.remove_prefix(1);
        if (character == '"') {
            value = Brindle::trimmed(value);
            return text;
        }
        const auto plain = character == '\\' ? takeEscaped(value) : std::optional(character);
        if (!plain)
            return std::nullopt;
        text += *plain;
    }
    return std::nullopt;
}

} // namespace

std::string fromText(std::string_view text) {
    return canStandAsItIs(text) ? std::string(text) : quoted(text);
}

std::string fromList(const std::vector<std::string>& texts) {
    std::string value;
    for (const std::string& text : texts) {
        const bool plain = !text.empty() && text.find(',') == text.npos && canStandAsItIs(text);
        value += (value.empty() ? "" : ", ") + (plain ? text : quoted(text));
    }
    return value;
}

std::optional<std::string> toText(std::string_view value) {
    value = Brindle::trimmed(value);
    if (!value.starts_with('"'))
        return std::string(value);
    const auto text = takeQuoted(value);
    return value.empty() ? text : std::nullopt;
}

std::optional<std::vector<std::string>> toList(std::string_view value) {
    std::vector<std::string> texts;
    for (;;) {
        value = Brindle::trimmed(value);
        if (value.starts_with('"')) {
            auto text = takeQuoted(value);
            if (!text || (!value.empty() && !value.starts_with(',')))
                return std::nullopt;
            texts.push_back(std::move(*text));
        } else {
            const auto comma = std::min(value.find(','), value.size());
            texts.emplace_back(Brindle::trimmed(value.substr(0, comma)));
            value.remove_prefix(comma);
        }
        if (value.empty())
            return texts;
        value.remove_prefix(1);
    }
}

} // namespace Velmora::ConfigurationValue
