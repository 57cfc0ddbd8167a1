#include <Sealwork/base/Base64LineEncoder.h>

#include <Sealwork/base/OpenSsl.h>

#include <algorithm>

namespace Sealwork {

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
    auto* out = reinterpret_cast<std::uint8_t*>(_out.data()) + begin;
    while (!bytes.empty()) {
        const auto line = bytes.first(std::min(bytes.size(), base64LineBytes));
        out += EVP_EncodeBlock(out, line.data(), toInt(line.size()));
        *out++ = '\n'; // In the place of the NUL that OpenSSL writes.
        bytes = bytes.subspan(line.size());
    }
}

void appendBase64Lines(std::string& out, std::span<const std::uint8_t> bytes) {
    Base64LineEncoder encoder(out);
    encoder.append(bytes);
    encoder.finish();
}

} // namespace Sealwork
