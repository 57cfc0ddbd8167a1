#include <Brindle/widgets/ThemeColors.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <array>

namespace Brindle {

namespace {

struct NamedColor {
    std::string_view name;
    const char* light;
    const char* dark;
};

constexpr std::array namedColors{
    NamedColor{"window", "#f6f7f9", "#1b1f26"},      NamedColor{"surface", "#ffffff", "#23282f"},
    NamedColor{"row_hover", "#e9eef6", "#2d3540"},   NamedColor{"background_text", "#fbfcfd", "#1f242b"},
    NamedColor{"selected", "#dae6fb", "#263753"},    NamedColor{"section", "#dae6fb", "#8793a6"},
    NamedColor{"text", "#1b2330", "#e4e8ee"},        NamedColor{"muted", "#5c6675", "#9aa4b2"},
    NamedColor{"disabled", "#5e6776", "#98a2b0"},    NamedColor{"link", "#2459b8", "#7aa7f5"},
    NamedColor{"error", "#b3261e", "#ff8a80"},       NamedColor{"remark", "#8a5000", "#f0b45a"},
    NamedColor{"border", "#d3d8e0", "#3a424e"},      NamedColor{"outline", "#7f8998", "#7b8594"},
    NamedColor{"accent", "#2459b8", "#7aa7f5"},      NamedColor{"accent_hover", "#1d4a9b", "#96baf8"},
    NamedColor{"accent_text", "#ffffff", "#14181e"},
};

} // namespace

QString ThemeColors::getColorName(std::string_view name) const {
    const auto color = std::ranges::find(namedColors, name, &NamedColor::name);
    if (color == namedColors.end())
        throw located(InternalError("Unknown color"), BRINDLE_HERE, {{"name", std::string(name)}});
    return QLatin1String(_code == Dark ? color->dark : color->light);
}

QString ThemeColors::fillIn(QString text) const {
    for (const NamedColor& color : namedColors) {
        const auto name = QLatin1String(color.name.data(), static_cast<int>(color.name.size()));
        text.replace(QLatin1Char('@') + name + QLatin1Char('@'), getColorName(color.name));
    }
    return text.replace(QLatin1String("@theme@"), getFolder());
}

QString ThemeColors::getFolder() const {
    return _code == Dark ? QStringLiteral("dark") : QStringLiteral("light");
}

} // namespace Brindle
