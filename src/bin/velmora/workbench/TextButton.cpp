#include <velmora/workbench/TextButton.h>

#include <Brindle/widgets/Theme.h>

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

namespace Velmora {

namespace {

constexpr int sideMargin = 4;     // pixels, at the sides of the text
constexpr int longestText = 1000; // characters

} // namespace

TextButton::TextButton(QWidget* parent) : QAbstractButton(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setLine({}, "muted", false);
}

void TextButton::setLine(const QString& text, const std::string& colorName, bool leadsSomewhere) {
    _colorName = colorName;
    _text = text.left(longestText).simplified();
    setAccessibleName(_text);
    setToolTip("<p>" + _text.toHtmlEscaped() + "</p>"); // so that it is broken into lines
    setEnabled(leadsSomewhere);
    setFocusPolicy(leadsSomewhere ? Qt::StrongFocus : Qt::NoFocus);
    setCursor(leadsSomewhere ? Qt::PointingHandCursor : Qt::ArrowCursor);
    updateGeometry();
    update();
}

QSize TextButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(_text) + 2 * sideMargin, fontMetrics().height() + sideMargin};
}

QSize TextButton::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

void TextButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (hasFocus() || (isEnabled() && underMouse())) {
        painter.setPen(hasFocus() ? Brindle::theme.getColor("accent") : Qt::transparent);
        painter.setBrush(Brindle::theme.getColor("row_hover"));
        painter.drawRoundedRect(rect().adjusted(0, 0, -1, -1), sideMargin, sideMargin);
    }
    painter.setPen(Brindle::theme.getColor(_colorName));
    const QRect inside = rect().adjusted(sideMargin, 0, -sideMargin, 0);
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(_text, Qt::ElideRight, inside.width()));
}

void TextButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace Velmora
