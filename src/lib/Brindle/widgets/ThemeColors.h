#pragma once

#include <Brindle/widgets/Theme.h>

#include <QString>

#include <string_view>

namespace Brindle {

/// The colours of the themes, by name.
class ThemeColors {
public:
    explicit ThemeColors(Theme::Code code) : _code(code) {}

    /// The colour as "#rrggbb"; an unknown name is an InternalError with the field "name".
    QString getColorName(std::string_view name) const;

    /// The text with each colour name between @ signs replaced by its colour, and `@theme@` by the folder of the theme.
    QString fillIn(QString text) const;

    /// Name of the folder that holds what is drawn for the theme: "light" or "dark".
    QString getFolder() const;

private:
    Theme::Code _code;
};

} // namespace Brindle
