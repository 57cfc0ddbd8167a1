#pragma once

#include <Quillon/Application.h>

#include <memory>

namespace Velmora {

/// The application object of either program, as `Quillon::Application::create` makes it: its names, of which generated
/// sources carry the full one, and its version.
[[nodiscard]] std::unique_ptr<Quillon::Application> createApplication(int& argc, char** argv, bool graphical);

} // namespace Velmora
