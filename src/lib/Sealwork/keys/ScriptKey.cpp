#include <Sealwork/keys/ScriptKey.h>

#include <Sealwork/base/Hex.h>
#include <Sealwork/base/Random.h>
#include <Sealwork/base/Sha256.h>
#include <Sealwork/keys/KeyFile.h>

namespace Sealwork {

ScriptKey ScriptKey::load(const std::filesystem::path& filename) {
    auto key = parse(readKeyFile(filename).text());
    if (!key)
        refuseKeyFile(filename, "not 64 hexadecimal digits and a line feed", BRINDLE_HERE);
    if (filename.filename() != key->getFileName())
        refuseKeyFile(filename, "not named after its key: " + key->getFileName(), BRINDLE_HERE);
    return std::move(*key);
}

std::optional<ScriptKey> ScriptKey::parse(std::string_view text) {
    SecureBuffer bytes(keySize);
    if (!text.ends_with('\n') || !fromHex(text.substr(0, text.size() - 1), bytes))
        return std::nullopt;
    return ScriptKey(std::move(bytes));
}

ScriptKey ScriptKey::make() {
    SecureBuffer bytes(keySize);
    fillSecretRandom(bytes);
    return ScriptKey(std::move(bytes));
}

SecureBuffer ScriptKey::getText() const {
    SecureBuffer text(2 * keySize + 1);
    writeHex(_bytes, std::span<std::uint8_t>(text).first(2 * keySize));
    text.data()[2 * keySize] = '\n';
    return text;
}

ScriptKey::ScriptKey(SecureBuffer bytes) : _bytes(std::move(bytes)), _id(getShortId(getSha256(_bytes))) {}

} // namespace Sealwork
