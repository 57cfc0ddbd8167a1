#include <fuzz/Property.h>

#include <velmora/rules/Common.h>

#include <Brindle/core/Exception.h>
#include <Sealwork/base/Hex.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

/// The number as the lowest `width` bits of a 64-bit two's complement.
std::uint64_t lowestBits(int value, unsigned long width) {
    const auto bits = static_cast<std::uint64_t>(std::int64_t{value});
    return width < 64 ? bits & ((std::uint64_t{1} << width) - 1) : bits;
}

void checkRendering(int value, unsigned long width) {
    try {
        const std::string literal = Velmora::getHexadecimal(value, width);
        require(width % 4 == 0, "only whole digits are rendered");
        require(literal.size() == width / 4 + 3, "a literal has the width");
        require(width == 0 || Velmora::isHexadecimal(literal), "a literal is hexadecimal");
        std::uint64_t rendered = 0;
        std::from_chars(literal.data() + 2, literal.data() + literal.size() - 1, rendered, 16);
        require(rendered == lowestBits(value, width), "a literal holds the number's lowest bits");
    } catch (const Brindle::InvalidRequest&) {
        require(width % 4 != 0, "only a width of broken digits is an invalid request");
    } catch (const Brindle::Fatal&) {
        require(width < 32, "every number fits in 32 bits");
    }
}

bool isDigit(unsigned char character) {
    return std::isxdigit(character) != 0;
}

void checkLiteral(const std::string& text) {
    const bool isQuoted =
        text.size() >= 4 && (text[0] == 'x' || text[0] == 'X') && text[1] == '"' && text.back() == '"';
    const bool isLiteral = isQuoted && std::all_of(text.begin() + 2, text.end() - 1, isDigit);
    require(Velmora::isHexadecimal(text) == isLiteral, "a literal is recognised, and nothing else");
}

void checkBytes(const std::string& text) {
    std::vector<std::uint8_t> bytes(text.size() / 2);
    const bool isHex = text.size() % 2 == 0 && std::ranges::all_of(text, isDigit);
    require(Sealwork::fromHex(text, bytes) == isHex, "pairs of digits are read, and nothing else");
    if (!isHex)
        return;
    const std::string again = Sealwork::toHex(bytes);
    require(Sealwork::isLowerHex(again, text.size()), "bytes are written in lower case");
    require(std::ranges::equal(text, again, {}, [](unsigned char c) { return std::tolower(c); }), "digits come back");
}

} // namespace

/// The input is a literal, digits of bytes, and, from its beginning, a number of four bytes and a width of one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkLiteral(text);
    checkBytes(text);
    if (int value = 0; size > sizeof value) {
        std::memcpy(&value, data, sizeof value);
        checkRendering(value, data[sizeof value] % 100U);
    }
    return 0;
}
