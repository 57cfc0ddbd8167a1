#include <velmora/rules/Common.h>

#include <velmora/rules/InformationBlock.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>
#include <Sealwork/Crypto.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace Velmora {

namespace {

constexpr int bothDirections = 1;
constexpr int allRecipients = -1;
constexpr int scriptKeyring = 0;

bool isLowerHexadecimalDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

} // namespace

bool isHexadecimal(std::string text) {
    constexpr std::size_t shortest = 4; // x"0"
    if (text.size() < shortest)
        return false;
    text = Brindle::toLower(text);
    const std::string_view literal = text;
    return literal.starts_with("x\"") && literal.ends_with('"') &&
           std::ranges::all_of(literal.substr(2, literal.size() - 3), isLowerHexadecimalDigit);
}

std::string getHexadecimal(int value, unsigned long bitCount) {
    if (bitCount % 4 != 0)
        throw Brindle::located(Brindle::InvalidRequest("bitCount should be a multiple of 4"), BRINDLE_HERE);
    const std::size_t width = bitCount / 4;
    std::array<char, 16> buffer{};
    const auto bits = static_cast<std::uint64_t>(std::int64_t{value});
    std::string digits(buffer.begin(), std::to_chars(buffer.begin(), buffer.end(), bits, 16).ptr);
    if (digits.size() < width)
        digits.insert(0, width - digits.size(), '0');
    while (digits.size() > width) {
        if (digits.front() != 'f') {
            throw Brindle::located(Brindle::Fatal("Value too high for specified width"), BRINDLE_HERE,
                                   {{"value", Brindle::getLabel(value)}, {"bitCount", Brindle::getLabel(bitCount)}});
        }
        digits.erase(0, 1);
    }
    return "x\"" + digits + "\"";
}

std::string getEncrypted(const std::string& language, const std::string& text) {
    std::string envelope;
    Sealwork::Crypto(bothDirections)
        .getEncrypted(allRecipients, language, InformationBlock::now().getBytes(), text, envelope);
    return envelope;
}

std::string getDecrypted(const std::string& text) {
    std::string plain;
    Sealwork::Crypto(bothDirections).getDecrypted(scriptKeyring, text, plain);
    return plain;
}

} // namespace Velmora
