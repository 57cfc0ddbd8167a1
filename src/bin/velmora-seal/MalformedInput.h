#pragma once

#include <Brindle/core/Exception.h>

namespace SealTool {

/// A text that is to be protected has its markers out of order, or holds what cannot be protected.
class MalformedInput : public Brindle::Fatal {
public:
    using Fatal::Fatal;
};

} // namespace SealTool
