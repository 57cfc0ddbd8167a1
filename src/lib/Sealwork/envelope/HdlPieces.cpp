#include <Sealwork/envelope/HdlPieces.h>

#include <Brindle/core/TextLines.h>
#include <Sealwork/envelope/EnvelopeDirective.h>
#include <Sealwork/envelope/EnvelopeRefused.h>

#include <optional>

namespace Sealwork {

namespace {

constexpr std::string_view beginName = "begin_protected";
constexpr std::string_view endName = "end_protected";

/// Cuts a text from its begin to its end.
class Cutter {
public:
    explicit Cutter(std::string_view text) : _text(text) {}

    /// Cuts at that offset and tells what lies in front of it.
    void cut(std::size_t end, bool isEnvelope) {
        if (end == _begin)
            return;
        const auto piece = _text.substr(_begin, end - _begin);
        _pieces.push_back({piece, isEnvelope, _line});
        _line += Brindle::getLineNumber(piece, piece.size()) - 1;
        _begin = end;
    }

    std::vector<HdlPiece> get() { return std::move(_pieces); }

private:
    std::string_view _text;
    std::size_t _begin = 0;
    std::size_t _line = 1;
    std::vector<HdlPiece> _pieces;
};

} // namespace

std::vector<HdlPiece> splitAtEnvelopes(std::string_view text) {
    Cutter cutter(text);
    BacktickLines lines(text);
    std::optional<std::size_t> open; // Offset of the begin of the envelope at hand.
    while (const auto line = lines.next()) {
        if (open && isDirective(line->text, endName)) {
            cutter.cut(line->end, true);
            open.reset();
        } else if (!open && isDirective(line->text, beginName)) {
            cutter.cut(line->begin, false);
            open = line->begin;
        } else if (!open && (isBlockDirective(line->text) || isDirective(line->text, endName))) {
            refuseMalformed(Brindle::getLineNumber(text, line->begin), "no begin_protected in front", BRINDLE_HERE);
        }
    }
    if (open)
        refuseMalformed(Brindle::getLineNumber(text, *open), "no end_protected follows", BRINDLE_HERE);
    cutter.cut(text.size(), false);
    return cutter.get();
}

} // namespace Sealwork
