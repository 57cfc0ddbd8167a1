#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Velmora {

/// The value of a line that does not matter.
QString getIgnoreLabel();

/// What a trigger line of the scope can be compared with, as the user chooses it: levels, and edges where these are
/// looked at.
QStringList getTriggerValues(bool withEdges);

/// The value's code in the generated HDL: two bits, or three where edges are looked at. Nothing for a value that does
/// not exist there.
std::optional<QString> getTriggerCode(const QString& value, bool withEdges);

} // namespace Velmora
