#pragma once

#include <velmora/signal/NumberSource.h>

#include <string_view>
#include <vector>

namespace Velmora {

/// True for a text with statements of which one gives a radix.
bool isCoe(std::string_view content);

/// The numbers of a coefficient file (`.coe`): statements `radix = 16;` and `coefdata = 0fff, f001;`. Radix 10 takes
/// real numbers. Those of radix 2 and 16 without a sign are bit patterns in two's complement, as wide as the longest of
/// the file, or as `width` bits when that is what they hold in whole digits. Throws what `NumberSource` throws.
std::vector<double> readCoeNumbers(const NumberSource& source, unsigned width);

} // namespace Velmora
