#pragma once

#include <velmora/signal/NumberSource.h>

#include <string_view>
#include <vector>

namespace Velmora {

/// True for what begins as an array of NumPy does.
bool isNpy(std::string_view content);

/// The numbers of a one-dimensional array of NumPy, of any floating-point or integer type in either byte order
/// (https://numpy.org/doc/stable/reference/generated/numpy.lib.format.html, versions 1 to 3). `f16` is the extended
/// format of x86. Throws what `NumberSource` throws.
std::vector<double> readNpyNumbers(const NumberSource& source);

} // namespace Velmora
