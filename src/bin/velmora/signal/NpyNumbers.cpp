#include <velmora/signal/NpyNumbers.h>

#include <velmora/signal/NumberText.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace Velmora {

namespace {

constexpr std::string_view magic = "\x93NUMPY";

/// The bytes as an unsigned number, the first the least significant.
std::uint64_t toUnsigned(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t index = bytes.size(); index > 0; --index)
        value = value << 8U | static_cast<std::uint8_t>(bytes[index - 1]);
    return value;
}

/// A floating-point number of that many bits, sign and exponent in front (IEEE 754), for formats without a type here.
double toReal(bool isNegative, unsigned exponent, unsigned exponentBits, double significand) {
    const int bias = (1 << (exponentBits - 1)) - 1;
    const double magnitude = exponent == (1U << exponentBits) - 1
                                 ? std::numeric_limits<double>::infinity()
                                 : std::ldexp(significand, static_cast<int>(std::max(exponent, 1U)) - bias);
    return isNegative ? -magnitude : magnitude;
}

double fromHalf(std::string_view bytes) {
    const auto bits = static_cast<unsigned>(toUnsigned(bytes));
    const unsigned exponent = bits >> 10U & 0x1FU;
    return toReal(bits >> 15U != 0, exponent, 5, (exponent != 0 ? 1.0 : 0.0) + (bits & 0x3FFU) / 1024.0);
}

/// 64 bits with their leading one, then exponent and sign; the rest fills up.
double fromExtended(std::string_view bytes) {
    const auto head = static_cast<unsigned>(toUnsigned(bytes.substr(8, 2)));
    const double significand = std::ldexp(static_cast<double>(toUnsigned(bytes.substr(0, 8))), -63);
    return toReal(head >> 15U != 0, head & 0x7FFFU, 15, significand);
}

double fromFloat(std::string_view bytes) {
    return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(toUnsigned(bytes))));
}

double fromDouble(std::string_view bytes) {
    return std::bit_cast<double>(toUnsigned(bytes));
}

double fromUnsigned(std::string_view bytes) {
    return static_cast<double>(toUnsigned(bytes));
}

double fromSigned(std::string_view bytes) {
    const auto unused = static_cast<unsigned>(64 - 8 * bytes.size());
    return static_cast<double>(static_cast<std::int64_t>(toUnsigned(bytes) << unused) >> unused);
}

/// How an element is kept.
struct ElementType {
    std::size_t size = 0; ///< Bytes.
    bool isBigEndian = false;
    double (*toNumber)(std::string_view) = nullptr; ///< Of its bytes, the first the least significant.
};

using Conversion = double (*)(std::string_view);

Conversion getConversion(char kind, std::size_t size) {
    const bool isInteger = size == 1 || size == 2 || size == 4 || size == 8;
    if (isInteger && (kind == 'i' || kind == 'u'))
        return kind == 'i' ? fromSigned : fromUnsigned;
    if (kind != 'f')
        return nullptr;
    switch (size) {
    case 2:
        return fromHalf;
    case 4:
        return fromFloat;
    case 8:
        return fromDouble;
    case 12:
    case 16:
        return fromExtended;
    default:
        return nullptr;
    }
}

std::optional<ElementType> parseType(std::string_view description) {
    if (description.size() < 3 || std::string_view("<>|=").find(description[0]) == std::string_view::npos)
        return std::nullopt;
    const auto size = parseInteger(description.substr(2));
    if (!size || *size <= 0)
        return std::nullopt;
    ElementType type{static_cast<std::size_t>(*size), description[0] == '>', nullptr};
    type.toNumber = getConversion(description[1], type.size);
    return type.toNumber ? std::optional(type) : std::nullopt;
}

/// What stands behind the key of the dictionary in the header up to the closing mark; none when it is missing.
std::optional<std::string_view> findValue(std::string_view header, std::string_view key, char open, char close) {
    const auto found = header.find(key);
    if (found == header.npos)
        return std::nullopt;
    header = Brindle::trimmed(header.substr(found + key.size()), Brindle::asciiSpaces);
    if (!header.starts_with(':'))
        return std::nullopt;
    header = Brindle::trimmed(header.substr(1), Brindle::asciiSpaces);
    const auto end = header.find(close, 1);
    return header.starts_with(open) && end != header.npos ? std::optional(header.substr(1, end - 1)) : std::nullopt;
}

/// The number of elements of a shape with one dimension, such as "5,"; none for another.
std::optional<std::size_t> parseLength(std::string_view shape) {
    shape = Brindle::trimmed(shape);
    if (!shape.ends_with(','))
        return std::nullopt;
    shape.remove_suffix(1);
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(shape.data(), shape.data() + shape.size(), length);
    return error == std::errc() && end == shape.data() + shape.size() ? std::optional(length) : std::nullopt;
}

/// Header and data.
struct Parts {
    std::string_view header;
    std::string_view data;
};

Parts split(const NumberSource& source) {
    std::string_view rest = source.content.substr(magic.size());
    const char version = rest.empty() ? '\0' : rest.front();
    if (version < 1 || version > 3)
        source.refuseLine("The version of the format is unknown", 1);
    const std::size_t lengthSize = version == 1 ? 2 : 4;
    rest.remove_prefix(std::min<std::size_t>(2, rest.size()));
    const std::uint64_t length = toUnsigned(rest.substr(0, lengthSize));
    rest.remove_prefix(std::min(lengthSize, rest.size()));
    if (length > rest.size())
        source.refuseLine("The file ends in its header", 1);
    return {rest.substr(0, length), rest.substr(length)};
}

} // namespace

bool isNpy(std::string_view content) {
    return content.starts_with(magic);
}

std::vector<double> readNpyNumbers(const NumberSource& source) {
    const Parts parts = split(source);
    const auto description = findValue(parts.header, "'descr'", '\'', '\'');
    const auto type = description ? parseType(*description) : std::nullopt;
    if (!type)
        source.refuseLine("The elements should be floating-point numbers or integers", 1);
    const auto shape = findValue(parts.header, "'shape'", '(', ')');
    const auto length = shape ? parseLength(*shape) : std::nullopt;
    if (!length || *length == 0)
        source.refuseLine("The array should have one dimension and an element", 1);
    if (parts.data.size() / type->size != *length || parts.data.size() % type->size != 0) {
        source.refuseElement("The data should be " + Brindle::getLabel(*length) + " elements of " +
                                 Brindle::getLabel(type->size) + " bytes",
                             std::min(parts.data.size() / type->size, *length) + 1);
    }
    std::vector<double> numbers;
    numbers.reserve(*length);
    for (std::size_t index = 0; index < *length; ++index) {
        std::string bytes(parts.data.substr(index * type->size, type->size));
        if (type->isBigEndian)
            std::ranges::reverse(bytes);
        numbers.push_back(type->toNumber(bytes));
        if (!std::isfinite(numbers.back()))
            source.refuseElement("The element is no finite number", index + 1);
    }
    return numbers;
}

} // namespace Velmora
