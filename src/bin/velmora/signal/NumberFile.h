#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Velmora {

/// The numbers that a file holds: text and CSV, `.coe`, an array in the syntax of C or JSON, or one of NumPy. The
/// content tells which. `width`, in bits, is that of the coefficients that they are to become: `.coe` files may hold
/// bit patterns. Throws Brindle::Critical with the fields "filename" and "line", or "element" for NumPy, for what
/// cannot be read and for a file without a number.
std::vector<double> readNumbers(std::string_view content, const std::string& filename, unsigned width);

} // namespace Velmora
