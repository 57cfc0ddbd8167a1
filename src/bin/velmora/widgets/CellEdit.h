#pragma once

namespace Velmora {

/// Lets a cell that is being edited take what was typed, as if the user had clicked elsewhere: a shortcut does not end
/// it.
void finishCellEdit();

} // namespace Velmora
