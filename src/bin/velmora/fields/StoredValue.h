#pragma once

#include <QString>
#include <QVariant>

#include <optional>

namespace Velmora {

// What a value from the settings stands for: empty or 0 when it is absent, nothing when it is of another type. A
// settings file may hold anything below a key, lists and raw bytes among it.

std::optional<QString> readText(const QVariant& value);
/// What an `int` cannot hold becomes the nearest that it can.
std::optional<int> readNumber(const QVariant& value);
std::optional<double> readDecimal(const QVariant& value);

} // namespace Velmora
