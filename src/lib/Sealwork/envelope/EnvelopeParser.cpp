#include <Sealwork/envelope/EnvelopeParser.h>

#include <Brindle/core/Text.h>
#include <Sealwork/base/Base64.h>
#include <Sealwork/envelope/EnvelopeRefused.h>
#include <Sealwork/envelope/HdlLanguage.h>

#include <algorithm>
#include <charconv>

namespace Sealwork {

namespace {

/// True for a right of version 2, which has a syntax of its own.
bool isRight(std::string_view body) {
    return Brindle::trimmed(body, Brindle::asciiSpaces).starts_with("control ");
}

std::optional<std::size_t> toNumber(std::string_view text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

} // namespace

Envelope EnvelopeParser::parse() {
    while (const auto line = _lines.nextOrLast()) {
        readLine(*line);
        _lineBegin = _text.size() - _lines.getRest().size();
    }
    if (_state != State::Behind)
        refuse("end_protected is missing", BRINDLE_HERE);
    return std::move(_envelope);
}

void EnvelopeParser::readLine(std::string_view line) {
    if (Brindle::trimmed(line, Brindle::asciiSpaces).empty())
        return;
    const auto body = getDirectiveBody(line);
    if (!body)
        refuse("text outside the blocks", BRINDLE_HERE);
    if (isRight(*body))
        return;
    const auto expressions = parseExpressions(*body);
    if (!expressions)
        refuse("directive that cannot be read", BRINDLE_HERE);
    if (_state == State::Before)
        _envelope.language = line.find("pragma") < line.find("protect") ? verilogLanguage : vhdlLanguage;
    for (const auto& expression : *expressions)
        obey(expression);
}

void EnvelopeParser::obey(const DirectiveExpression& expression) {
    const auto& [name, value] = expression;
    if (name == "begin_protected")
        begin();
    else if (_state != State::Inside)
        refuse("directive outside the envelope", BRINDLE_HERE);
    else if (name == "end_protected")
        end();
    else if (name == "version")
        _envelope.version = value;
    else if (name == "encrypt_agent")
        _envelope.agent = value;
    else if (name == "encrypt_agent_info")
        _envelope.agentInfo = value;
    else if (name == "key_keyowner")
        _keyBlock.owner = value;
    else if (name == "key_keyname")
        _keyBlock.name = value;
    else if (name == "key_method")
        _keyBlock.method = Brindle::toLower(value);
    else if (name == "data_method")
        _envelope.dataMethod = Brindle::toLower(value);
    else if (name == "encoding")
        setEncoding(value);
    else if (name == "key_block")
        addKeyBlock();
    else if (name == "data_block")
        setData();
    else if (name == "digest_block")
        takeBlock();
}

void EnvelopeParser::begin() {
    if (_state != State::Before)
        refuse("begin_protected inside an envelope", BRINDLE_HERE);
    _state = State::Inside;
}

void EnvelopeParser::end() {
    if (_envelope.keyBlocks.empty())
        refuse("key_block is missing", BRINDLE_HERE);
    if (_envelope.data.empty())
        refuse("data_block is missing", BRINDLE_HERE);
    _state = State::Behind;
}

void EnvelopeParser::setEncoding(std::string_view value) {
    _blockBytes.reset();
    const auto expressions = parseExpressions(value);
    if (!expressions)
        refuse("encoding that cannot be read", BRINDLE_HERE);
    for (const auto& [name, setting] : *expressions) {
        if (name == "enctype" && Brindle::toLower(setting) != "base64")
            refuse("encoding is not base64", BRINDLE_HERE);
        if (name != "bytes")
            continue;
        _blockBytes = toNumber(setting);
        if (!_blockBytes)
            refuse("bytes is not a number", BRINDLE_HERE);
    }
}

void EnvelopeParser::addKeyBlock() {
    _keyBlock.wrapped = takeBlock();
    _envelope.keyBlocks.push_back(_keyBlock);
}

void EnvelopeParser::setData() {
    if (!_envelope.data.empty())
        refuse("second data_block", BRINDLE_HERE);
    _envelope.data = takeBlock();
}

std::vector<std::uint8_t> EnvelopeParser::takeBlock() {
    // Base64 knows no backtick: the block ends with the line in front of the next directive's.
    const auto rest = _lines.getRest();
    const auto lineBreak = rest.rfind('\n', rest.find('`')); // `npos` + 1 is 0: no line is left.
    const auto block = _lines.take(lineBreak + 1);
    auto bytes = decodeBase64Text(block);
    if (!bytes || bytes->empty())
        refuse("block is not base64", BRINDLE_HERE);
    if (_blockBytes && *_blockBytes != bytes->size())
        refuse("block has not the bytes that its encoding names", BRINDLE_HERE);
    _blockBytes.reset();
    return std::move(*bytes);
}

void EnvelopeParser::refuse(std::string reason, const Brindle::Location& location) const {
    refuseMalformed(_firstLine + Brindle::getLineNumber(_text, _lineBegin) - 1, std::move(reason), location);
}

} // namespace Sealwork
