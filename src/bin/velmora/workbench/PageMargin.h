#pragma once

namespace Velmora {

/// What stands apart on the pages of the workbench, in pixels.
constexpr int pageMargin = 8;

} // namespace Velmora
