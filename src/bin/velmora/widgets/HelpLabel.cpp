#include <velmora/widgets/HelpLabel.h>

#include <Brindle/widgets/Theme.h>

namespace Velmora {

HelpLabel::HelpLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setStyleSheet(QStringLiteral("QLabel { background-color: ") + Brindle::theme.getColorName("row_hover") +
                  QStringLiteral("; padding: 0em 0.2em; border: 1px solid ") + Brindle::theme.getColorName("border") +
                  QStringLiteral("}"));
}

} // namespace Velmora
