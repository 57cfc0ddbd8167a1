#include <Sealwork/envelope/EnvelopeText.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/LargeText.h>
#include <Sealwork/base/Base64.h>
#include <Sealwork/envelope/HdlLanguage.h>

namespace Sealwork {

namespace {

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

} // namespace

EnvelopeText::EnvelopeText(std::string& text, std::string_view language)
    : _text(text), _prefix(getDirectivePrefix(language)) {}

void EnvelopeText::addHead(const EnvelopeSeal& seal) {
    addDirective("begin_protected");
    addDirective("version=" + std::string(version));
    addDirective("encrypt_agent=" + quoted(agent));
    addDirective("encrypt_agent_info=" + quoted(seal.format()));
    const std::string_view afterMac = "\"\n";
    _macPosition = _text.size() - seal.macHex.size() - afterMac.size();
}

void EnvelopeText::openKeyBlock(std::string_view owner, std::string_view name, std::size_t size) {
    addDirective("key_keyowner=" + quoted(owner) + ", key_keyname=" + quoted(name) + ", key_method=\"rsa\"");
    addEncoding(size);
    addDirective("key_block");
}

void EnvelopeText::openDataBlock(std::string_view method, std::size_t size) {
    const std::size_t directivesSize = 256; // Those that frame the block.
    Brindle::reserveMore(_text, base64LinesSize(size) + directivesSize);
    addDirective("data_method=" + quoted(method));
    addEncoding(size);
    addDirective("data_block");
}

void EnvelopeText::setMac(std::string_view macHex) {
    _text.replace(_macPosition, macHex.size(), macHex);
}

void EnvelopeText::addDirective(std::string_view directive) {
    _text.append(_prefix).append(directive).append("\n");
}

void EnvelopeText::addEncoding(std::size_t size) {
    addDirective("encoding=(enctype=\"base64\", line_length=" + Brindle::getLabel(base64LineCharacters) +
                 ", bytes=" + Brindle::getLabel(size) + ")");
}

} // namespace Sealwork
