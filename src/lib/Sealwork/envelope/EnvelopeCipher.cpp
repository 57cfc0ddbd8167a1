#include <Sealwork/envelope/EnvelopeCipher.h>

namespace Sealwork {

CipherContext startCipher(DataMethod method, std::span<const std::uint8_t> key, std::span<const std::uint8_t> initial,
                          CipherDirection direction) {
    const EVP_CIPHER* cipher = method == DataMethod::Aes128Cbc ? EVP_aes_128_cbc() : EVP_aes_256_cbc();
    CipherContext context(EVP_CIPHER_CTX_new());
    require(context && EVP_CipherInit_ex(context.get(), cipher, nullptr, key.data(), initial.data(),
                                         static_cast<int>(direction)) == 1,
            "starting a cipher", BRINDLE_HERE);
    return context;
}

} // namespace Sealwork
