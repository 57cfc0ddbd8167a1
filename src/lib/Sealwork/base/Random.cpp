#include <Sealwork/base/Random.h>

#include <Sealwork/base/OpenSsl.h>

#include <openssl/rand.h>

namespace Sealwork {

namespace {

using Draw = int(unsigned char* bytes, int size);

void fill(std::span<std::uint8_t> bytes, Draw* draw, const Brindle::Location& location) {
    const ErrorScope scope;
    require(draw(bytes.data(), toInt(bytes.size())) == 1, "drawing random numbers", location,
            "No random numbers available");
}

} // namespace

void fillRandom(std::span<std::uint8_t> bytes) {
    fill(bytes, RAND_bytes, BRINDLE_HERE);
}

void fillSecretRandom(std::span<std::uint8_t> bytes) {
    fill(bytes, RAND_priv_bytes, BRINDLE_HERE);
}

} // namespace Sealwork
