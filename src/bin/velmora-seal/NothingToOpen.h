#pragma once

#include <Brindle/core/Exception.h>

namespace SealTool {

/// A file holds nothing of what was to be opened in it.
class NothingToOpen : public Brindle::Fatal {
public:
    using Fatal::Fatal;
};

} // namespace SealTool
