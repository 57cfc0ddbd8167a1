#include <velmora/signal/CoeNumbers.h>

#include <velmora/signal/NumberText.h>

#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace Velmora {

namespace {

using Brindle::asciiSpaces;
using Brindle::trimmed;

/// `key = value;`, the key in lower case.
struct Statement {
    std::string key;
    std::string_view value;
    std::size_t line = 0; ///< Of the value's beginning.
};

/// The statements of a file. A comment is a semicolon in front of a statement and what follows it in its line.
class Statements {
public:
    explicit Statements(std::string_view content) : _rest(content) {}

    std::optional<Statement> next() {
        skipComments();
        const auto equals = _rest.find('=');
        if (equals == _rest.npos)
            return std::nullopt;
        Statement statement;
        statement.key = Brindle::toLower(trimmed(_rest.substr(0, equals), asciiSpaces));
        _line += countLines(_rest.substr(0, equals));
        statement.line = _line;
        _rest.remove_prefix(equals + 1);
        const auto end = _rest.find(';');
        statement.value = _rest.substr(0, end);
        _line += countLines(statement.value);
        _rest.remove_prefix(end == _rest.npos ? _rest.size() : end + 1);
        return statement;
    }

    std::string_view getRest() const { return _rest; }
    std::size_t getLine() const { return _line; }

private:
    static std::size_t countLines(std::string_view text) {
        return static_cast<std::size_t>(std::ranges::count(text, '\n'));
    }

    /// Blanks, and from a semicolon that ends no statement to the end of its line.
    void skipComments() {
        for (;;) {
            const auto begin = std::min(_rest.find_first_not_of(asciiSpaces), _rest.size());
            _line += countLines(_rest.substr(0, begin));
            _rest.remove_prefix(begin);
            if (!_rest.starts_with(';'))
                return;
            _rest.remove_prefix(std::min(_rest.find('\n'), _rest.size()));
        }
    }

    std::string_view _rest;
    std::size_t _line = 1;
};

struct Literal {
    std::string_view text;
    std::size_t line = 0;
};

std::vector<Literal> getLiterals(const Statement& statement) {
    std::vector<Literal> literals;
    std::size_t line = statement.line;
    std::string_view rest = statement.value;
    while (!rest.empty()) {
        const auto end = std::min(rest.find_first_of(", \t\v\f\r\n"), rest.size());
        if (end > 0)
            literals.push_back({rest.substr(0, end), line});
        if (end < rest.size() && rest[end] == '\n')
            ++line;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return literals;
}

bool isPattern(const Literal& literal) {
    return !literal.text.starts_with('-') && !literal.text.starts_with('+');
}

/// Bit patterns and their signs.
class Patterns {
public:
    Patterns(const std::vector<Literal>& literals, int radix, unsigned width)
        : _radix(radix), _areSigned(std::ranges::all_of(literals, isPattern)) {
        const unsigned digitBits = radix == 16 ? 4 : 1;
        std::size_t longest = 0;
        for (const Literal& literal : literals)
            longest = std::max(longest, literal.text.size());
        _width = static_cast<unsigned>(std::min<std::size_t>(longest * digitBits, 64)); // of those parsed none has more
        // Ten bits fill three hexadecimal digits, either with zeros or with their sign in front.
        const bool areInWidth = _width >= width && _width < width + digitBits;
        const auto fits = [this, width](const Literal& literal) {
            const auto value = parse(literal.text);
            return value && *value < (1ULL << width);
        };
        if (areInWidth && std::ranges::all_of(literals, fits))
            _width = width;
    }

    std::optional<double> toNumber(std::string_view text) const {
        const bool isNegative = !_areSigned && text.starts_with('-');
        if (!_areSigned && (isNegative || text.starts_with('+')))
            text.remove_prefix(1);
        const auto value = parse(text);
        if (!value)
            return std::nullopt;
        const auto number = static_cast<double>(*value);
        if (_areSigned && _width > 0 && *value >> (_width - 1) != 0)
            return number - std::ldexp(1.0, static_cast<int>(_width));
        return isNegative ? -number : number;
    }

private:
    /// At most 52 bits, which a real number holds.
    std::optional<std::uint64_t> parse(std::string_view text) const {
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, _radix);
        const bool isNumber = error == std::errc() && end == text.data() + text.size() && value < (1ULL << 52U);
        return isNumber ? std::optional(value) : std::nullopt;
    }

    const int _radix;
    const bool _areSigned; ///< The upper bit is a sign, since there are no others.
    unsigned _width = 0;
};

int readRadix(const NumberSource& source, const Statement& statement) {
    const auto radix = parseInteger(trimmed(statement.value, asciiSpaces));
    if (radix != 2 && radix != 10 && radix != 16)
        source.refuseLine("The radix should be 2, 10 or 16", statement.line);
    return *radix;
}

std::vector<double> readData(const NumberSource& source, const Statement& statement, int radix, unsigned width) {
    const std::vector<Literal> literals = getLiterals(statement);
    const Patterns patterns(literals, radix, width);
    std::vector<double> numbers;
    for (const Literal& literal : literals) {
        const auto number = radix == 10 ? parseReal(literal.text) : patterns.toNumber(literal.text);
        if (!number)
            source.refuseNumber(literal.text, literal.line);
        numbers.push_back(*number);
    }
    return numbers;
}

} // namespace

bool isCoe(std::string_view content) {
    Statements statements(content);
    while (const auto statement = statements.next()) {
        if (statement->key == "radix")
            return true;
    }
    return false;
}

std::vector<double> readCoeNumbers(const NumberSource& source, unsigned width) {
    std::optional<int> radix;
    std::vector<double> numbers;
    Statements statements(source.content);
    while (const auto statement = statements.next()) {
        if (statement->key == "radix")
            radix = readRadix(source, *statement);
        if (statement->key != "coefdata")
            continue; // what else is told of a filter changes no number
        if (!radix)
            source.refuseLine("The radix should stand in front of the coefficients", statement->line);
        if (!numbers.empty())
            source.refuseLine("Coefficients are given twice", statement->line);
        numbers = readData(source, *statement, *radix, width);
    }
    if (!statements.getRest().empty())
        source.refuseLine("The text is no statement", statements.getLine());
    return numbers;
}

} // namespace Velmora
