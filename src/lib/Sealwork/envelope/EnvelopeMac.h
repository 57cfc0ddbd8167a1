#pragma once

#include <Sealwork/base/Sha256.h>
#include <Sealwork/envelope/DataMethod.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

struct evp_mac_ctx_st;

namespace Sealwork {

/// The authentication code by which an altered envelope is known: HMAC-SHA256 (RFC 2104) over language, data method,
/// information block and data, under a key that is derived from the session key.
class EnvelopeMac {
public:
    EnvelopeMac(std::span<const std::uint8_t> sessionKey, std::string_view language, DataMethod method,
                std::string_view infoHex);

    /// Takes the next bytes of the data: initial value and ciphertext.
    void update(std::span<const std::uint8_t> data);
    /// The code; nothing may follow.
    Sha256Digest finish();

private:
    struct Release {
        void operator()(evp_mac_ctx_st* context) const noexcept;
    };

    void update(std::string_view text);

    std::unique_ptr<evp_mac_ctx_st, Release> _context;
};

} // namespace Sealwork
