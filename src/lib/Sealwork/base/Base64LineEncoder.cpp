#include <Sealwork/base/Base64LineEncoder.h>

#include <Sealwork/base/Base64Alphabet.h>

#include <algorithm>
#include <cstring>

namespace Sealwork {

namespace {

using CharacterPair = std::array<char, 2>;

/// The two characters of every 12 bits: half the look-ups of a table of single characters.
constexpr auto pairs = []() {
    std::array<CharacterPair, 4096> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits)
        table[bits] = {base64Alphabet[bits >> 6], base64Alphabet[bits & 63]};
    return table;
}();

void encodeGroup(std::uint32_t bits, char* out) {
    std::memcpy(out, pairs[bits >> 12].data(), 2);
    std::memcpy(out + 2, pairs[bits & 0xfff].data(), 2);
}

/// Writes one line with its line feed and returns where the next one begins.
char* encodeLine(std::span<const std::uint8_t> bytes, char* out) {
    std::size_t index = 0;
    for (; index + 3 <= bytes.size(); index += 3, out += 4)
        encodeGroup(static_cast<std::uint32_t>(bytes[index] << 16 | bytes[index + 1] << 8 | bytes[index + 2]), out);
    const std::size_t restSize = bytes.size() - index;
    if (restSize > 0) {
        const int second = restSize == 2 ? bytes[index + 1] : 0;
        encodeGroup(static_cast<std::uint32_t>(bytes[index] << 16 | second << 8), out);
        std::memset(out + 1 + restSize, '=', 3 - restSize);
        out += 4;
    }
    *out = '\n';
    return out + 1;
}

} // namespace

void Base64LineEncoder::append(std::span<const std::uint8_t> bytes) {
    if (_restSize > 0) {
        const auto missing = bytes.first(std::min(bytes.size(), base64LineBytes - _restSize));
        std::ranges::copy(missing, _rest.begin() + static_cast<std::ptrdiff_t>(_restSize));
        _restSize += missing.size();
        bytes = bytes.subspan(missing.size());
        if (_restSize < base64LineBytes)
            return;
        encodeLines(_rest);
    }
    const std::size_t wholeLines = bytes.size() / base64LineBytes * base64LineBytes;
    encodeLines(bytes.first(wholeLines));
    const auto rest = bytes.subspan(wholeLines);
    std::ranges::copy(rest, _rest.begin());
    _restSize = rest.size();
}

void Base64LineEncoder::finish() {
    encodeLines(std::span(_rest).first(_restSize));
}

void Base64LineEncoder::encodeLines(std::span<const std::uint8_t> bytes) {
    const std::size_t begin = _out.size();
    _out.resize(begin + base64LinesSize(bytes.size()));
    char* out = _out.data() + begin;
    while (!bytes.empty()) {
        const auto line = bytes.first(std::min(bytes.size(), base64LineBytes));
        out = encodeLine(line, out);
        bytes = bytes.subspan(line.size());
    }
}

void appendBase64Lines(std::string& out, std::span<const std::uint8_t> bytes) {
    Base64LineEncoder encoder(out);
    encoder.append(bytes);
    encoder.finish();
}

} // namespace Sealwork
