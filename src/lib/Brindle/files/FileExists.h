#pragma once

#include <Brindle/core/Exception.h>

namespace Brindle {

/// A file is not written because there is one of its name.
class FileExists : public Fatal {
public:
    using Fatal::Fatal;
};

} // namespace Brindle
