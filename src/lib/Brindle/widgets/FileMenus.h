#pragma once

#include <QtGlobal>

#include <string>
#include <vector>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace Brindle {

/// Adds an entry for each file, with what can be done with it: Show, in the program that the desktop has for it, Open
/// folder and Copy path.
void addFileMenus(QMenu& menu, const std::vector<std::string>& filenames);

} // namespace Brindle
