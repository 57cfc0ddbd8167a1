#pragma once

namespace Velmora {

/// Prints on the console how the program is called.
void usage();

} // namespace Velmora
