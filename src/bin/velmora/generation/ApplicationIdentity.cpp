#include <velmora/generation/ApplicationIdentity.h>

namespace Velmora {

std::unique_ptr<Quillon::Application> createApplication(int& argc, char** argv, bool graphical) {
    return Quillon::Application::create(argc, argv, "Velm", "Velmora", VELMORA_VERSION_MAJOR, VELMORA_VERSION_MINOR,
                                        VELMORA_VERSION_PATCH, graphical);
}

} // namespace Velmora
