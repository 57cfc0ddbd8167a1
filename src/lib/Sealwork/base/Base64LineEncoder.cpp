#include <Sealwork/base/Base64LineEncoder.h>

#include <Sealwork/base/OpenSsl.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace Sealwork {

namespace {

using Pair = std::array<char, 2>;

constexpr std::array<Pair, 4096> getPairs() {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<Pair, 4096> all{};
    for (std::size_t bits = 0; bits < all.size(); ++bits)
        all[bits] = {alphabet[bits / alphabet.size()], alphabet[bits % alphabet.size()]};
    return all;
}

/// The two characters of each twelve bits.
constexpr auto pairs = getPairs();

/// Encodes a line, the longest that there are in two look-ups for three bytes: twice as quick as OpenSSL. Returns the
/// number of characters.
std::size_t encodeLine(char* out, std::span<const std::uint8_t> line) {
    if (line.size() != base64LineBytes) // OpenSSL adds a NUL, for which the line feed's place is there.
        return static_cast<std::size_t>(
            EVP_EncodeBlock(reinterpret_cast<std::uint8_t*>(out), line.data(), toInt(line.size())));
    for (std::size_t i = 0; i < base64LineBytes; i += 3, out += 4) {
        const std::uint32_t bits = std::uint32_t{line[i]} << 16U | std::uint32_t{line[i + 1]} << 8U | line[i + 2];
        std::memcpy(out, pairs[bits >> 12U].data(), sizeof(Pair));
        std::memcpy(out + 2, pairs[bits & 0xfffU].data(), sizeof(Pair));
    }
    return base64LineCharacters;
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
        out += encodeLine(out, line);
        *out++ = '\n';
        bytes = bytes.subspan(line.size());
    }
}

void appendBase64Lines(std::string& out, std::span<const std::uint8_t> bytes) {
    Base64LineEncoder encoder(out);
    encoder.append(bytes);
    encoder.finish();
}

} // namespace Sealwork
