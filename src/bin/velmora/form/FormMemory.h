#pragma once

namespace Velmora {

/// Whether a form takes its values from the settings store when it is made and leaves them there in the end.
enum class FormMemory { Kept, None };

} // namespace Velmora
