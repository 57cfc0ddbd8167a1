#include <velmora/widgets/SmoothImages.h>

#include <QAbstractTextDocumentLayout>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <QTextDocument>

namespace Velmora {

namespace {

/// In units of the page: that of the file of single density.
QSize getSize(const QTextFormat& format) {
    return QImageReader(format.toImageFormat().name()).size();
}

/// In the screen's density; a pixmap by itself does not look for the file of double density, an icon does.
QPixmap getPixmap(const QTextFormat& format) {
    const QSize size = getSize(format);
    QIcon icon;
    icon.addFile(format.toImageFormat().name(), size);
    return icon.pixmap(size);
}

} // namespace

SmoothImages::SmoothImages(QTextDocument* document) : QObject(document) {
    document->documentLayout()->registerHandler(QTextFormat::ImageObject, this);
}

QSizeF SmoothImages::intrinsicSize(QTextDocument*, int, const QTextFormat& format) {
    return getSize(format);
}

void SmoothImages::drawObject(QPainter* painter, const QRectF& rect, QTextDocument*, int, const QTextFormat& format) {
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QPixmap pixmap = getPixmap(format);
    painter->drawPixmap(rect, pixmap, pixmap.rect());
}

} // namespace Velmora
