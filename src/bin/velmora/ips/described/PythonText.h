#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Velmora {

// Python literals, as `ast.literal_eval` reads them.

/// A text between double quotes, which holds no control character.
std::string toPythonText(std::string_view text);
/// Of literals.
std::string toPythonTuple(const std::vector<std::string>& elements);
std::string toPythonList(const std::vector<std::string>& elements);

} // namespace Velmora
