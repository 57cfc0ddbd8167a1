#pragma once

#include <Brindle/core/Exception.h>

namespace GenerateTool {

/// The command line does not say what to do; the message does.
class UsageError : public Brindle::InvalidRequest {
public:
    using InvalidRequest::InvalidRequest;
};

} // namespace GenerateTool
