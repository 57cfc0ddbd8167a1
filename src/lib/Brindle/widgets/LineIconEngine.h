#pragma once

#include <Brindle/widgets/ThemeColors.h>

#include <QIconEngine>

namespace Brindle {

/// Draws a line icon of one colour at any size. The drawing is read when it is first shown.
class LineIconEngine : public QIconEngine {
public:
    LineIconEngine(const ThemeColors& colors, QString name);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;

private:
    QString getColorName(QIcon::Mode mode, QIcon::State state) const;

    ThemeColors _colors;
    QString _name;
};

} // namespace Brindle
