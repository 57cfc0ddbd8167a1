#include <velmora/rules/Version.h>

namespace Velmora {

const Version version{VELMORA_VERSION_MAJOR, VELMORA_VERSION_MINOR, VELMORA_VERSION_PATCH, VELMORA_VERSION};

} // namespace Velmora
