#pragma once

#include <Sealwork/envelope/Envelope.h>
#include <Sealwork/envelope/EnvelopeDirective.h>

#include <Brindle/core/Location.h>
#include <Brindle/core/TextLines.h>

namespace Sealwork {

/// Reads the text of one envelope, whoever wrote it.
class EnvelopeParser {
public:
    /// The text must outlive the parser; its first line is the file's line `firstLine`.
    EnvelopeParser(std::string_view text, std::size_t firstLine) : _text(text), _lines(text), _firstLine(firstLine) {}

    /// Throws EnvelopeRefused "truncated or malformed".
    Envelope parse();

private:
    enum class State { Before, Inside, Behind }; ///< Of the envelope.

    void readLine(std::string_view line);
    void obey(const DirectiveExpression& expression);
    void begin();
    void end();
    void setEncoding(std::string_view value);
    void addKeyBlock();
    void setData();
    std::vector<std::uint8_t> takeBlock();
    [[noreturn]] void refuse(std::string reason, const Brindle::Location& location) const;

    std::string_view _text;
    Brindle::TextLines _lines;
    std::size_t _firstLine;
    std::size_t _lineBegin = 0; ///< Offset of the line at hand.
    State _state = State::Before;
    Envelope _envelope;
    EnvelopeKeyBlock _keyBlock;             ///< As far as directives described the next one.
    std::optional<std::size_t> _blockBytes; ///< What `encoding` said of the next block.
};

} // namespace Sealwork
