#pragma once

#include <Brindle/collections/Collection.h>

#include <string>

namespace Brindle {

/// A collection of UTF-8 strings.
using strings = Collection<std::string>;

} // namespace Brindle
