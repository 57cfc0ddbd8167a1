#pragma once

// For the source files of this library only: the one place that includes OpenSSL's headers for the others.

#include <Brindle/core/Location.h>
#include <Sealwork/base/SecureBuffer.h>

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include <memory>
#include <string_view>

namespace Sealwork {

template <auto Free>
struct Release {
    template <typename T>
    void operator()(T* object) const noexcept {
        Free(object);
    }
};

using Bio = std::unique_ptr<BIO, Release<BIO_free>>;
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, Release<EVP_CIPHER_CTX_free>>;
using DigestContext = std::unique_ptr<EVP_MD_CTX, Release<EVP_MD_CTX_free>>;
using KeyContext = std::unique_ptr<EVP_PKEY_CTX, Release<EVP_PKEY_CTX_free>>;

/// Leaves OpenSSL's error queue of this thread as it was found, so that no failure of ours is taken for somebody
/// else's.
class ErrorScope {
public:
    ErrorScope() { ERR_set_mark(); }
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;
    ~ErrorScope() { ERR_pop_to_mark(); }
};

/// Throws Fatal with the message and the fields "operation" and "reason" (the newest of OpenSSL's error queue) unless
/// the operation succeeded. The location is the caller's.
void require(bool succeeded, std::string_view operation, const Brindle::Location& location,
             const char* message = "Cryptography failure");

/// The size as OpenSSL's functions take it. Callers have checked that it fits.
constexpr int toInt(std::size_t size) {
    return static_cast<int>(size);
}

inline const std::uint8_t* toBytes(std::string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

/// A BIO that reads the text, which must outlive it.
Bio openText(std::string_view text);
/// What was written to a memory BIO.
SecureBuffer getContent(BIO& bio);

} // namespace Sealwork
