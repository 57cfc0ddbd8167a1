#pragma once

#include <string>

namespace Velmora {

/// The directory whose `lib/python2.7` holds the standard library of the embedded interpreter: the one that an
/// installation carries, otherwise that of the Python which the program was built with. It is found from the place of
/// the executable and not from ORVANE_PREFIX: it must fit the interpreter library, which the loader finds from there
/// too, and a variable of the environment must not choose what code the program runs. Needs the application object.
std::string getPythonHome();

} // namespace Velmora
