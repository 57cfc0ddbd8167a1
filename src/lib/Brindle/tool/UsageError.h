#pragma once

#include <Brindle/core/Exception.h>

namespace Brindle {

/// A command line does not say what to do; the message does.
class UsageError : public InvalidRequest {
public:
    using InvalidRequest::InvalidRequest;
};

} // namespace Brindle
