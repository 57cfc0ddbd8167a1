#include <velmora/SmoothImages.h>

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPixmap>
#include <QTextDocument>

namespace Velmora {

namespace {

/// In the density that is nearest to the screen's.
QPixmap getPixmap(const QTextFormat& format) {
    return QPixmap(format.toImageFormat().name());
}

} // namespace

SmoothImages::SmoothImages(QTextDocument* document) : QObject(document) {
    document->documentLayout()->registerHandler(QTextFormat::ImageObject, this);
}

QSizeF SmoothImages::intrinsicSize(QTextDocument*, int, const QTextFormat& format) {
    const QPixmap pixmap = getPixmap(format);
    return QSizeF(pixmap.size()) / pixmap.devicePixelRatioF();
}

void SmoothImages::drawObject(QPainter* painter, const QRectF& rect, QTextDocument*, int, const QTextFormat& format) {
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QPixmap pixmap = getPixmap(format);
    painter->drawPixmap(rect, pixmap, pixmap.rect());
}

} // namespace Velmora
