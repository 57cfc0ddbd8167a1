#pragma once

#include <velmora/signal/NumberSource.h>

#include <string_view>
#include <vector>

namespace Velmora {

/// True for a text with a brace outside comments.
bool isCArray(std::string_view content);

/// The numbers of the one array, in one pair of braces, of a C source. Integers may be octal or hexadecimal; those that
/// the type in front of the array cannot hold are its negative ones. Throws what `NumberSource` throws.
std::vector<double> readCNumbers(const NumberSource& source);

/// The numbers of a JSON text (RFC 8259) that is an array of them. Throws what `NumberSource` throws.
std::vector<double> readJsonNumbers(const NumberSource& source);

} // namespace Velmora
