#include <velmora/generation/ApplicationIdentity.h>

#include <velmora/rules/Version.h>

namespace Velmora {

std::unique_ptr<Quillon::Application> createApplication(int& argc, char** argv, bool graphical) {
    return Quillon::Application::create(argc, argv, "Velm", "Velmora", version.major, version.minor, version.patch,
                                        graphical);
}

} // namespace Velmora
