#pragma once

#include <Brindle/core/Exception.h>

namespace SealTool {

/// A file that is to be protected holds no region.
class NothingToProtect : public Brindle::Fatal {
public:
    using Fatal::Fatal;
};

} // namespace SealTool
