#include <Brindle/widgets/QtLabel.h>

namespace Brindle {

std::string getLabel(const QString& text) {
    return text.toStdString();
}

std::string getLabel(const QColor& color) {
    return color.name(QColor::HexRgb).toStdString();
}

QString toQString(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace Brindle
