#include <velmora/workbench/MessageLabel.h>

#include <Brindle/widgets/Theme.h>

namespace Velmora {

MessageLabel::MessageLabel(const char* objectName) {
    setObjectName(QLatin1String(objectName));
    setTextFormat(Qt::PlainText);
}

void MessageLabel::tell(const QString& text, const std::string& colorName) {
    QPalette colors;
    colors.setColor(QPalette::WindowText, Brindle::theme.getColor(colorName));
    setPalette(colors);
    setText(text);
}

} // namespace Velmora
