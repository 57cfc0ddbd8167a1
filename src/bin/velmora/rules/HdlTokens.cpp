#include <velmora/rules/HdlTokens.h>

#include <velmora/rules/VhdlReservedWords.h>

#include <Brindle/core/Text.h>

#include <algorithm>
#include <cctype>
#include <set>

namespace Velmora {

namespace {

bool isSpace(char character) {
    return Brindle::asciiSpaces.find(character) != std::string_view::npos;
}

bool isLetter(char character) {
    return std::isalpha(static_cast<unsigned char>(character)) || static_cast<unsigned char>(character) >= 0x80;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isNamePart(char character) {
    return isLetter(character) || isDigit(character) || character == '_';
}

/// What both languages share: a place in the text, and the tokens found in front of it.
class Scanner {
public:
    explicit Scanner(std::string_view text) : _text(text) {}

    bool isAtEnd() const { return _position >= _text.size(); }
    char peek(std::size_t ahead = 0) const {
        return _position + ahead < _text.size() ? _text[_position + ahead] : '\0';
    }
    bool startsWith(std::string_view start) const { return _text.substr(_position).starts_with(start); }
    void skip(std::size_t count = 1) {
        _position = std::min(_position + count, _text.size());
        _isApart = true;
    }
    /// Passes over everything in front of the text, and the text if `isWhole`.
    void skipTo(std::string_view end, bool isWhole) {
        const auto found = _text.find(end, std::min(_position, _text.size()));
        _position = found == _text.npos ? _text.size() : found + (isWhole ? end.size() : 0);
        _isApart = true;
    }
    /// The characters of a name from the offset on.
    std::string_view peekName(std::size_t offset = 0) const {
        const auto rest = _text.substr(std::min(_position + offset, _text.size()));
        return {rest.begin(), std::ranges::find_if_not(rest, isNamePart)};
    }
    /// Takes that many characters as a token.
    void take(std::size_t count) {
        count = std::min(count, _text.size() - _position);
        _tokens.push_back({_text.substr(_position, count), _isApart});
        _position += count;
        _isApart = false;
    }
    /// Takes what ends at the next `quote` behind the first character; the rest of the line when it holds none.
    void takeQuoted(char quote, char escape = '\0') {
        std::size_t size = 1;
        while (_position + size < _text.size() && peek(size) != quote && peek(size) != '\n')
            size += escape && peek(size) == escape ? 2U : 1U;
        take(peek(size) == quote ? size + 1 : size);
    }
    /// Passes over the directive of the line, or over an enciphered region.
    void skipProtected() {
        constexpr std::string_view begin = "`protect begin_protected";
        constexpr std::string_view end = "`protect end_protected";
        if (startsWith(begin))
            skipTo(end, true);
        skipTo("\n", false);
    }
    std::string_view getLast() const { return _tokens.empty() ? std::string_view() : _tokens.back().text; }
    HdlTokens& getTokens() { return _tokens; }

private:
    std::string_view _text;
    std::size_t _position = 0;
    bool _isApart = false;
    HdlTokens _tokens;
};

bool skipBlockComment(Scanner& scanner) {
    if (!scanner.startsWith("/*"))
        return false;
    scanner.skip(2);
    scanner.skipTo("*/", true);
    return true;
}

/// A number with its fraction, exponent and base: 10, 1.5e-3, 16#FF#.
std::size_t getVhdlNumberSize(const Scanner& scanner) {
    std::size_t size = 0;
    bool isBased = false;
    for (;; ++size) {
        const char character = scanner.peek(size);
        const char before = size > 0 ? scanner.peek(size - 1) : '\0';
        isBased = isBased || character == '#';
        const bool isSign = (character == '+' || character == '-') && (before == 'e' || before == 'E') && !isBased;
        const bool isFraction = character == '.' && isNamePart(scanner.peek(size + 1));
        if (!isNamePart(character) && character != '#' && !isFraction && !isSign)
            return size;
    }
}

/// A quote that follows a name is that of an attribute or a qualified expression.
bool isTick(std::string_view last) {
    return isHdlName(last) && !isVhdlReservedWord(last);
}

std::size_t getSymbolSize(const Scanner& scanner, const std::vector<std::string_view>& symbols) {
    const auto found =
        std::ranges::find_if(symbols, [&scanner](std::string_view symbol) { return scanner.startsWith(symbol); });
    return found == symbols.end() ? 1 : found->size();
}

void scanVhdl(Scanner& scanner) {
    static const std::vector<std::string_view> symbols{":=", "=>", "<=", ">=", "/=", "**", "<>"};
    const char character = scanner.peek();
    if (isSpace(character)) {
        scanner.skip();
    } else if (scanner.startsWith("--")) {
        scanner.skipTo("\n", false);
    } else if (character == '`') {
        scanner.skipProtected();
    } else if (skipBlockComment(scanner)) {
        return;
    } else if (isLetter(character)) {
        scanner.take(scanner.peekName().size());
    } else if (isDigit(character)) {
        scanner.take(getVhdlNumberSize(scanner));
    } else if (character == '"' || character == '\\') {
        scanner.takeQuoted(character);
    } else if (character == '\'' && scanner.peek(2) == '\'' && !isTick(scanner.getLast())) {
        scanner.take(3);
    } else {
        scanner.take(getSymbolSize(scanner, symbols));
    }
}

/// Which branches of conditional text are taken.
class VerilogConditions {
public:
    bool isActive() const {
        return std::ranges::all_of(_branches, [](const Branch& branch) { return branch.isTaken; });
    }
    void define(std::string_view macro) { _macros.insert(macro); }
    void open(std::string_view macro, bool wantsDefined) {
        const bool isTaken = _macros.contains(macro) == wantsDefined;
        _branches.push_back({isTaken, isTaken});
    }
    void change(bool holds) {
        if (_branches.empty())
            return;
        Branch& branch = _branches.back();
        branch.isTaken = holds && !branch.wasTaken;
        branch.wasTaken = branch.wasTaken || branch.isTaken;
    }
    bool isDefined(std::string_view macro) const { return _macros.contains(macro); }
    void close() {
        if (!_branches.empty())
            _branches.pop_back();
    }

private:
    struct Branch {
        bool isTaken;
        bool wasTaken; ///< This one or one before it.
    };
    std::vector<Branch> _branches;
    std::set<std::string_view> _macros;
};

/// Passes over the line, and those that a backslash at its end joins to it.
void skipDirectiveLine(Scanner& scanner) {
    while (!scanner.isAtEnd() && scanner.peek() != '\n')
        scanner.skip(scanner.peek() == '\\' ? 2 : 1);
}

void scanDirective(Scanner& scanner, VerilogConditions& conditions) {
    static const std::set<std::string_view> lines{
        "define",         "undef",        "include",           "timescale",          "default_nettype",
        "line",           "pragma",       "resetall",          "celldefine",         "endcelldefine",
        "begin_keywords", "end_keywords", "unconnected_drive", "nounconnected_drive"};
    const std::string_view directive = scanner.peekName(1);
    if (directive == "protect") {
        scanner.skipProtected();
        return;
    }
    const bool isConditional = directive == "ifdef" || directive == "ifndef" || directive == "elsif";
    if (isConditional || directive == "else" || directive == "endif" || lines.contains(directive)) {
        scanner.skip(1 + directive.size());
        while (scanner.peek() == ' ' || scanner.peek() == '\t')
            scanner.skip();
        const std::string_view macro = scanner.peekName();
        if (directive == "elsif")
            conditions.change(conditions.isDefined(macro));
        else if (isConditional)
            conditions.open(macro, directive == "ifdef");
        else if (directive == "else")
            conditions.change(true);
        else if (directive == "endif")
            conditions.close();
        else if (directive == "define" && conditions.isActive())
            conditions.define(macro);
        if (isConditional)
            scanner.skip(macro.size());
        else if (lines.contains(directive))
            skipDirectiveLine(scanner);
        return;
    }
    scanner.take(1 + directive.size());
}

std::size_t getVerilogNumberSize(const Scanner& scanner) {
    std::size_t size = 0;
    for (;; ++size) {
        const char character = scanner.peek(size);
        const bool isBase = character == '\'' && isNamePart(scanner.peek(size + 1));
        const bool isFraction = character == '.' && isDigit(scanner.peek(size + 1));
        if (!isNamePart(character) && !isBase && !isFraction)
            return size;
    }
}

void scanVerilog(Scanner& scanner, VerilogConditions& conditions) {
    static const std::vector<std::string_view> symbols{
        "(*", "*)", "**", "<<", ">>", "<=", ">=", "==", "!=", "&&", "||", "::"};
    const char character = scanner.peek();
    if (isSpace(character)) {
        scanner.skip();
    } else if (scanner.startsWith("//")) {
        scanner.skipTo("\n", false);
    } else if (skipBlockComment(scanner)) {
        return;
    } else if (character == '`') {
        scanDirective(scanner, conditions);
    } else if (isLetter(character) || character == '_' || character == '$') {
        std::size_t size = 1;
        while (isNamePart(scanner.peek(size)) || scanner.peek(size) == '$')
            ++size;
        scanner.take(size);
    } else if (isDigit(character) || character == '\'') {
        scanner.take(std::max(getVerilogNumberSize(scanner), std::size_t{1}));
    } else if (character == '"') {
        scanner.takeQuoted('"', '\\');
    } else if (character == '\\') {
        std::size_t size = 1;
        while (scanner.peek(size) != '\0' && !isSpace(scanner.peek(size)))
            ++size;
        scanner.take(size);
    } else if (scanner.startsWith("(*)")) {
        scanner.take(1); // of a sensitivity list, not an attribute
    } else {
        scanner.take(getSymbolSize(scanner, symbols));
    }
}

} // namespace

HdlTokens tokenizeVhdl(std::string_view text) {
    Scanner scanner(text);
    while (!scanner.isAtEnd())
        scanVhdl(scanner);
    return std::move(scanner.getTokens());
}

HdlTokens tokenizeVerilog(std::string_view text) {
    Scanner scanner(text);
    VerilogConditions conditions;
    while (!scanner.isAtEnd()) {
        const auto count = scanner.getTokens().size();
        scanVerilog(scanner, conditions);
        if (!conditions.isActive())
            scanner.getTokens().resize(count);
    }
    return std::move(scanner.getTokens());
}

bool HdlTokenWalk::take(std::string_view text) {
    if (!isSameVhdlName(peek(), text))
        return false;
    skip();
    return true;
}

HdlTokens HdlTokenWalk::takeUntil(const std::vector<std::string_view>& ends) {
    HdlTokens taken;
    for (int depth = 0; !isAtEnd(); skip()) {
        const std::string_view text = peek();
        if (depth == 0 && std::ranges::find(ends, text) != ends.end())
            break;
        if (text == "(" || text == "[" || text == "{")
            ++depth;
        else if (text == ")" || text == "]" || text == "}")
            depth = std::max(depth - 1, 0);
        taken.push_back(_tokens[_position]);
    }
    return taken;
}

bool isHdlName(std::string_view text) {
    return !text.empty() && (isLetter(text.front()) || text.front() == '_' || text.front() == '\\');
}

bool isSameVhdlName(std::string_view one, std::string_view other) {
    return Brindle::toLower(one) == Brindle::toLower(other);
}

std::string join(const HdlTokens& tokens) {
    std::string text;
    for (const HdlToken& token : tokens) {
        if (token.isApart && !text.empty())
            text += ' ';
        text += token.text;
    }
    return text;
}

} // namespace Velmora
