#pragma once

#include <QString>
#include <QStringList>

namespace GenerateTool {

/// What a command works on, as the command line gives it. Throw UsageError when it gives something else.
void requireNoOperand(const QStringList& operands);
QString requireOneIP(const QStringList& operands);
void requireFiles(const QStringList& operands);

} // namespace GenerateTool
