#pragma once

#include <string>

namespace Velmora {

/// The current local date and time, such as "05/03/2014 - 14:07".
std::string getDateLabel();

/// The date and time that stand in generated files, in the same form: those of the environment variable
/// SOURCE_DATE_EPOCH in UTC when it is set (https://reproducible-builds.org/specs/source-date-epoch/), otherwise those
/// of the clock. Throws Brindle::Fatal with the field "value" when the variable is no whole number of seconds since
/// 1970, or one beyond the year 9999.
std::string getGenerationDateLabel();

/// Throws what that function throws.
void requireGenerationDate();

} // namespace Velmora
