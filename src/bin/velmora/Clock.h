#pragma once

#include <string>

namespace Velmora {

/// The current local date and time, such as "05/03/2014 - 14:07".
std::string getDateLabel();

} // namespace Velmora
