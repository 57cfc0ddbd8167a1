#pragma once

#include <Quillon/Application.h>

#include <memory>

namespace Velmora {

/// The application object of this product's programs, as `Quillon::Application::create` makes it.
[[nodiscard]] std::unique_ptr<Quillon::Application> createApplication(int& argc, char** argv, bool graphical);

} // namespace Velmora
