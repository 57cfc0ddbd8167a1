#include <Sealwork/base/Hex.h>

namespace Sealwork {

namespace {

constexpr std::string_view lowerDigits = "0123456789abcdef";

int digitValue(char character) {
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    if (character >= 'A' && character <= 'F')
        return character - 'A' + 10;
    return -1;
}

} // namespace

std::string toHex(std::span<const std::uint8_t> bytes) {
    std::string text(2 * bytes.size(), '0');
    writeHex(bytes, {reinterpret_cast<std::uint8_t*>(text.data()), text.size()});
    return text;
}

void writeHex(std::span<const std::uint8_t> bytes, std::span<std::uint8_t> digits) {
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        digits[2 * index] = static_cast<std::uint8_t>(lowerDigits[bytes[index] >> 4]);
        digits[2 * index + 1] = static_cast<std::uint8_t>(lowerDigits[bytes[index] & 15]);
    }
}

bool fromHex(std::string_view text, std::span<std::uint8_t> bytes) {
    if (text.size() != 2 * bytes.size())
        return false;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const int high = digitValue(text[2 * index]);
        const int low = digitValue(text[2 * index + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes[index] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return true;
}

bool isLowerHex(std::string_view text, std::size_t digitCount) {
    return text.size() == digitCount && text.find_first_not_of(lowerDigits) == text.npos;
}

} // namespace Sealwork
