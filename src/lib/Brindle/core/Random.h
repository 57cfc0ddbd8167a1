#pragma once

namespace Brindle {

/// A value between 0 and the type's largest, all equally likely, other ones in each run of the program. Good enough to
/// shuffle, not for cryptography.
unsigned long getRandomValue();

} // namespace Brindle
