#pragma once

#include <Brindle/core/Exception.h>

#include <string>
#include <string_view>

namespace Sealwork {

/// A recipient's public key is not fit for use: "Recipient key refused: " and the fault.
class RecipientRefused : public Brindle::Fatal {
public:
    explicit RecipientRefused(std::string_view fault) : Fatal("Recipient key refused: " + std::string(fault)) {}
};

} // namespace Sealwork
