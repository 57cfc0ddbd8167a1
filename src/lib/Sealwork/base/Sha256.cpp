#include <Sealwork/base/Sha256.h>

#include <Sealwork/base/Hex.h>
#include <Sealwork/base/OpenSsl.h>

namespace Sealwork {

Sha256Digest getSha256(std::span<const std::uint8_t> bytes) {
    const ErrorScope scope;
    Sha256Digest digest;
    require(EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_sha256(), nullptr) == 1, "hashing",
            BRINDLE_HERE);
    return digest;
}

std::string getShortId(const Sha256Digest& digest) {
    return toHex(std::span(digest).first(shortIdDigits / 2));
}

} // namespace Sealwork
