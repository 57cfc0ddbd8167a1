#include <Sealwork/base/SecureBuffer.h>

#include <openssl/crypto.h>

namespace Sealwork {

SecureBuffer& SecureBuffer::operator=(SecureBuffer&& other) noexcept {
    if (this == &other)
        return *this;
    cleanse();
    _bytes = std::move(other._bytes);
    return *this;
}

SecureBuffer::~SecureBuffer() {
    cleanse();
}

void SecureBuffer::shrink(std::size_t size) {
    if (size >= _bytes.size())
        return;
    OPENSSL_cleanse(_bytes.data() + size, _bytes.size() - size);
    _bytes.resize(size);
}

void SecureBuffer::cleanse() noexcept {
    OPENSSL_cleanse(_bytes.data(), _bytes.size());
}

} // namespace Sealwork
