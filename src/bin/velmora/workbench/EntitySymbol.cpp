#include <velmora/workbench/EntitySymbol.h>

#include <Brindle/widgets/Theme.h>

#include <QFontMetrics>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace Velmora {

namespace {

// Pixels.
constexpr int pinLength = 12; // without the bits that stand above it
constexpr int inset = 10;     // from the edge of the box to a name
constexpr int gap = 20;       // between the names of both sides
constexpr int symbolMargin = 4;
constexpr int wedge = 5; // half of its height

constexpr int longestText = 40; // characters of a name or of bits

QString getBits(const QString& type) {
    static const QRegularExpression range(QStringLiteral("[(\\[]\\s*(.+?)\\s*(?:downto|to|:)\\s*(.+?)\\s*[)\\]]"),
                                          QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = range.match(type);
    return match.hasMatch() ? match.captured(1) + ":" + match.captured(2) : QString();
}

bool isClock(const QString& name) {
    static const QRegularExpression clock(QStringLiteral("(^|_)[a-z]?(clk|clock)\\d*(_|$)"),
                                          QRegularExpression::CaseInsensitiveOption);
    return clock.match(name).hasMatch();
}

} // namespace

EntitySymbol::EntitySymbol(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("entitySymbol"));
}

void EntitySymbol::setEntity(const QString& name, const std::vector<Preview::Port>& ports) {
    _name = name.left(longestText);
    _left.clear();
    _right.clear();
    QStringList told;
    for (const Preview::Port& port : ports) {
        const bool isInput = port.mode.startsWith(QLatin1String("in")) && !port.mode.startsWith(QLatin1String("ino"));
        (isInput ? _left : _right)
            .push_back({port.name.left(longestText), getBits(port.type).left(longestText), isClock(port.name)});
        told += port.name + " " + port.mode + " " + port.type;
    }
    setAccessibleName(tr("Symbol of %1").arg(name));
    setAccessibleDescription(told.join(QStringLiteral(", ")));
    updateGeometry();
    update();
}

int EntitySymbol::getRowHeight() const {
    return fontMetrics().height() + 2;
}

int EntitySymbol::getWidth(const Pins& pins, QString Pin::*text) const {
    int width = 0;
    for (const Pin& pin : pins)
        width = std::max(width, fontMetrics().horizontalAdvance(pin.*text));
    return width;
}

QSize EntitySymbol::sizeHint() const {
    if (_name.isEmpty())
        return {0, 0};
    const int names = getWidth(_left, &Pin::name) + getWidth(_right, &Pin::name) + gap;
    const int box = std::max(names, fontMetrics().horizontalAdvance(_name)) + 2 * inset;
    const int pins = getWidth(_left, &Pin::bits) + getWidth(_right, &Pin::bits) + 2 * pinLength;
    const int rows = static_cast<int>(std::max(_left.size(), _right.size())) + 1; // and the name
    return {box + pins + 2 * symbolMargin, rows * getRowHeight() + 4 * symbolMargin};
}

void EntitySymbol::paintEvent(QPaintEvent*) {
    if (_name.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int left = symbolMargin + getWidth(_left, &Pin::bits) + pinLength;
    const int right = symbolMargin + getWidth(_right, &Pin::bits) + pinLength;
    const QRect box(left, symbolMargin, sizeHint().width() - left - right, sizeHint().height() - 2 * symbolMargin);
    painter.setPen(Brindle::theme.getColor("outline"));
    painter.setBrush(Brindle::theme.getColor("surface"));
    painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), symbolMargin, symbolMargin);
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(Brindle::theme.getColor("text"));
    const QRect title(box.left(), box.top() + symbolMargin, box.width(), getRowHeight());
    painter.drawText(title, Qt::AlignCenter,
                     QFontMetrics(bold).elidedText(_name, Qt::ElideRight, box.width() - symbolMargin));
    painter.setFont(font());
    paintPins(painter, _left, box, true);
    paintPins(painter, _right, box, false);
}

void EntitySymbol::paintPins(QPainter& painter, const Pins& pins, const QRect& box, bool areLeft) const {
    const int edge = areLeft ? box.left() : box.right() + 1;
    const int outwards = areLeft ? -1 : 1;
    const int side = areLeft ? Qt::AlignLeft : Qt::AlignRight;
    const int otherSide = areLeft ? Qt::AlignRight : Qt::AlignLeft;
    int top = box.top() + symbolMargin + getRowHeight();
    for (const Pin& pin : pins) {
        const double middle = top + (getRowHeight() + 1) / 2.0;
        painter.setPen(Brindle::theme.getColor("outline"));
        painter.drawLine(QPointF(edge, middle), QPointF(edge + outwards * pinLength, middle));
        if (pin.isClock) {
            const std::array points{QPointF(edge, middle - wedge), QPointF(edge - outwards * (wedge + 2), middle),
                                    QPointF(edge, middle + wedge)};
            painter.drawPolyline(points.data(), static_cast<int>(points.size()));
        }
        painter.setPen(Brindle::theme.getColor("text"));
        painter.drawText(QRect(box.left() + inset, top, box.width() - 2 * inset, getRowHeight()),
                         side | Qt::AlignVCenter, pin.name);
        painter.setPen(Brindle::theme.getColor("muted"));
        const QRect outside(areLeft ? 0 : edge + pinLength + 2, top, areLeft ? edge - pinLength - 2 : width(),
                            getRowHeight());
        painter.drawText(outside, otherSide | Qt::AlignVCenter, pin.bits);
        top += getRowHeight();
    }
}

} // namespace Velmora
