#pragma once

#include <QObject>
#include <QTextObjectInterface>

QT_BEGIN_NAMESPACE
class QTextDocument;
QT_END_NAMESPACE

namespace Velmora {

/// Draws the images of a rich text smoothly whatever the screen's scale; left to itself a rich text drops pixels of
/// them at scales such as 150 %. Images are files or resources, with others of double density beside them (name@2x.png)
/// where such screens are to show them sharply.
class SmoothImages : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    /// Takes over the images of the document, which becomes the parent.
    explicit SmoothImages(QTextDocument* document);

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int position,
                    const QTextFormat& format) override;
};

} // namespace Velmora
