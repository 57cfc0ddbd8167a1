#include <velmora/SmoothImages.h>

#include <QAbstractTextDocumentLayout>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <QTextDocument>

namespace Velmora {

namespace {

/// In the screen's density; a pixmap by itself does not look for the file of double density, an icon does.
QPixmap getPixmap(const QTextFormat& format) {
    const QString name = format.toImageFormat().name();
    return QIcon(name).pixmap(QImageReader(name).size());
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
