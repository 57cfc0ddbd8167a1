#pragma once

#include <QString>

#include <string_view>

namespace Brindle {

/// The colours of the themes, by name.
class ThemeColors {
public:
    /// What identifies a theme; also its place in the list of themes.
    enum Code { Light = 0, Dark = 1 };

    explicit ThemeColors(Code code) : _code(code) {}

    /// The colour as "#rrggbb"; an unknown name is an InternalError with the field "name".
    QString getColorName(std::string_view name) const;

    /// The text with each colour name between @ signs replaced by its colour, and `@theme@` by the folder of the theme.
    QString fillIn(QString text) const;

    /// Name of the folder that holds what is drawn for the theme: "light" or "dark".
    QString getFolder() const;

private:
    Code _code;
};

} // namespace Brindle
