#pragma once

#include <Brindle/core/Exception.h>

namespace SealTool {

/// The command line does not say what to do; the message does.
class UsageError : public Brindle::InvalidRequest {
public:
    using InvalidRequest::InvalidRequest;
};

} // namespace SealTool
