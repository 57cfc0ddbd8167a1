#pragma once

#include <QByteArray>

#include <functional>

namespace GenerateTool {

/// Does the work in a process of its own and returns what it returns: of what it leaves behind only files are seen
/// here. The process ends with this one. Throws Brindle::Fatal with the field "reason" when it ended before it was
/// done.
QByteArray runInOwnProcess(const std::function<QByteArray()>& work);

} // namespace GenerateTool
