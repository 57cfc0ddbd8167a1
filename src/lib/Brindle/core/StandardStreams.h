#pragma once

namespace Brindle {

/// Opens "/dev/null" for each of standard input, output and error that the caller of the program closed. Otherwise the
/// next file that is opened takes its number, and what is printed goes into that file. Reading and writing
/// fail as they would without.
void completeStandardStreams();

} // namespace Brindle
