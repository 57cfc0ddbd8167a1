#include <Sealwork/base/Base64.h>

#include <Sealwork/base/OpenSsl.h>

#include <algorithm>
#include <array>
#include <string>

namespace Sealwork {

namespace {

constexpr std::size_t chunkBytes = 3072; // A multiple of three.

/// Fills the bytes from characters that are their one encoding. OpenSSL alone would also take white space around them
/// and stray bits, which encoding again tells.
bool decode(std::string_view characters, std::span<std::uint8_t> bytes) {
    if (characters.size() != base64Size(bytes.size()))
        return false;
    std::array<std::uint8_t, chunkBytes> decoded{};
    std::array<std::uint8_t, base64Size(chunkBytes) + 1> again{}; // It ends with a NUL.
    while (!bytes.empty()) {
        const auto part = bytes.first(std::min(bytes.size(), chunkBytes));
        const auto text = characters.substr(0, base64Size(part.size()));
        if (EVP_DecodeBlock(decoded.data(), toBytes(text), toInt(text.size())) < 0)
            return false;
        std::copy_n(decoded.begin(), part.size(), part.begin());
        EVP_EncodeBlock(again.data(), part.data(), toInt(part.size()));
        if (!std::equal(text.begin(), text.end(), again.begin()))
            return false;
        characters.remove_prefix(text.size());
        bytes = bytes.subspan(part.size());
    }
    return true;
}

bool isWhiteSpace(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

} // namespace

bool decodeBase64Lines(std::string_view lines, std::span<std::uint8_t> bytes) {
    if (lines.size() != base64LinesSize(bytes.size()))
        return false;
    std::string characters;
    characters.reserve(lines.size());
    while (!lines.empty()) {
        const auto line = lines.substr(0, base64LineCharacters + 1);
        if (line.back() != '\n')
            return false;
        characters += line.substr(0, line.size() - 1);
        lines.remove_prefix(line.size());
    }
    return decode(characters, bytes);
}

std::optional<std::vector<std::uint8_t>> decodeBase64Text(std::string_view text) {
    std::string characters;
    characters.reserve(text.size());
    std::ranges::remove_copy_if(text, std::back_inserter(characters), isWhiteSpace);
    std::size_t padding = 0;
    if (characters.ends_with('='))
        padding = characters.ends_with("==") ? 2 : 1;
    std::vector<std::uint8_t> bytes(std::max(characters.size() / 4 * 3, padding) - padding);
    return decode(characters, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace Sealwork
