#include <Brindle/widgets/LineIconEngine.h>

#include <Brindle/widgets/ThemeResources.h>

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace Brindle {

LineIconEngine::LineIconEngine(const ThemeColors& colors, QString name) : _colors(colors), _name(std::move(name)) {}

void LineIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
    const qreal scale = painter->device()->devicePixelRatioF();
    QPixmap drawn = pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state);
    drawn.setDevicePixelRatio(scale);
    painter->drawPixmap(rect, drawn);
}

QPixmap LineIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    const QString colorName = getColorName(mode, state);
    const QString key =
        QStringLiteral("Brindle/%1/%2/%3x%4").arg(_name, colorName).arg(size.width()).arg(size.height());
    QPixmap drawn;
    if (QPixmapCache::find(key, &drawn))
        return drawn;
    drawn = QPixmap(size);
    drawn.fill(Qt::transparent);
    QByteArray drawing = ThemeResources::read(QStringLiteral("icons/%1.svg").arg(_name));
    QSvgRenderer renderer(drawing.replace("currentColor", colorName.toLatin1()));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&drawn);
    renderer.render(&painter);
    painter.end();
    QPixmapCache::insert(key, drawn);
    return drawn;
}

QIconEngine* LineIconEngine::clone() const {
    return new LineIconEngine(*this);
}

QString LineIconEngine::getColorName(QIcon::Mode mode, QIcon::State state) const {
    if (mode == QIcon::Disabled)
        return _colors.getColorName("disabled");
    return _colors.getColorName(state == QIcon::On ? "accent" : "text");
}

} // namespace Brindle
