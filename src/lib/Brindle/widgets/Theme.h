#pragma once

#include <Brindle/collections/Collection.h>
#include <Brindle/widgets/ThemeColors.h>

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>

#include <compare>
#include <string>

QT_BEGIN_NAMESPACE
class QApplication;
class QWidget;
QT_END_NAMESPACE

namespace Brindle {

/// The look of the program: colours, icons, images, palette and style sheet. A value: copies are equal and cheap. What
/// has a name (a colour, an icon, an image, a tip) is asked for by it; a name that does not exist is an InternalError
/// with the field "name".
class Theme {
public:
    using Code = ThemeColors::Code;
    using enum ThemeColors::Code;

    constexpr Theme(Code code = Light) : _code(code) {}

    /// Every theme, in the order of the codes.
    static Collection<Theme> getThemes();
    /// The theme with the name, whatever its letter case; the light one when there is none.
    static Theme getTheme(const QString& name);

    constexpr Code getCode() const { return _code; }
    /// "Light" or "Dark"; settings keep it in lower case.
    QString getName() const;

    auto operator<=>(const Theme&) const = default;

    /// A colour of the theme. Grounds: "window", "surface", "row_hover", "background_text", "selected"; "section" is
    /// one for black text only. Text, legible on every other ground: "text", "muted", "disabled", "link", "error",
    /// "remark". Lines: "border" (hairlines), "outline" (edge of an input). The accent: "accent", "accent_hover" and
    /// "accent_text", which stands on both.
    QColor getColor(const std::string& name) const;
    /// The same colour as a style sheet takes it: "#rrggbb".
    QString getColorName(const std::string& name) const;

    /// A line icon in the theme's colours that is drawn when it is first shown: "ip", "about", "settings", "copy",
    /// "select-all", "clear", "erase", "computer", "drive", "file", "folder".
    QIcon getIcon(const std::string& name) const;
    /// Path of an image for rich text, for the theme's ground: "velmora" (the product), "logo-mid" (its maker).
    QString getImagePath(const std::string& name) const;
    /// One sentence that tells what a preference does: "theme", "animations", "size".
    QString getTip(const std::string& name) const;

    QPalette getPalette() const;
    /// The style sheet of the application; it covers every kind of widget that the program shows.
    QString getStyleSheet() const;
    /// Gives the application the theme's base style, palette and style sheet.
    void apply(QApplication& application) const;

    /// Gives a widget the manners that a style sheet cannot: item views and scroll areas scroll smoothly, a scroll area
    /// brings into view what gets the focus, the popup of a combo box takes the style sheet, the wheel scrolls what is
    /// around a combo or spin box instead of changing it. Enriching twice does no harm. The widget is not kept.
    void enrich(QWidget* widget) const;
    /// A framed wrapper that becomes the parent of the widget and carries it, as a `QWidget*`, in the dynamic property
    /// "child". The caller owns the wrapper, which has the parent that the widget had.
    QWidget* getCapWidget(QWidget* widget) const;

private:
    Code _code;
};

/// The theme of the process.
extern Theme theme;

} // namespace Brindle
