#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Velmora {

/// A name, number, literal or symbol of an HDL text.
struct HdlToken {
    std::string_view text;
    bool isApart = false; ///< White space or a comment stands in front of it.
};
using HdlTokens = std::vector<HdlToken>;

/// The tokens of a VHDL text, which they refer to, without comments. Enciphered regions and lines of tool directives,
/// which begin with a grave accent, are passed over. A text that is no VHDL gives some tokens or other.
HdlTokens tokenizeVhdl(std::string_view text);
/// The same of a Verilog text. Of what compiler directives make conditional, the branches are taken that the macros
/// which the text defines itself choose; uses of macros stay as they are.
HdlTokens tokenizeVerilog(std::string_view text);

/// Walks tokens from the first to the last.
class HdlTokenWalk {
public:
    /// The tokens must outlive the walk.
    explicit HdlTokenWalk(const HdlTokens& tokens, std::size_t position = 0) : _tokens(tokens), _position(position) {}

    bool isAtEnd() const { return _position >= _tokens.size(); }
    std::size_t getPosition() const { return _position; }
    /// The text of the token that many places on; empty behind the last.
    std::string_view peek(std::size_t ahead = 0) const {
        return _position + ahead < _tokens.size() ? _tokens[_position + ahead].text : std::string_view();
    }
    void skip(std::size_t count = 1) { _position += count; }
    /// Passes over the token if it is this one, in VHDL's sense: in either case.
    bool take(std::string_view text);
    /// The tokens up to one of the ends outside all brackets, which stays; up to the last when there is none.
    HdlTokens takeUntil(const std::vector<std::string_view>& ends);

private:
    const HdlTokens& _tokens;
    std::size_t _position;
};

/// True for a name or a reserved word.
bool isHdlName(std::string_view text);
/// True when the texts are the same but for the case of ASCII letters.
bool isSameVhdlName(std::string_view one, std::string_view other);
/// The tokens' text with one blank wherever white space or comments stood.
std::string join(const HdlTokens& tokens);

} // namespace Velmora
