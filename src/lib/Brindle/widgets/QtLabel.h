#pragma once

#include <Brindle/core/Label.h>

#include <QColor>
#include <QString>

#include <string>

namespace Brindle {

/// The text in UTF-8.
std::string getLabel(const QString& text);

/// "#rrggbb", as a style sheet takes it; the alpha channel is left out.
std::string getLabel(const QColor& color);

/// The UTF-8 text as Qt keeps it.
QString toQString(const std::string& text);

} // namespace Brindle
