#pragma once

#include <velmora/workbench/Preview.h>

#include <QWidget>

namespace Velmora {

/// The symbol of an entity: a box with its inputs on the left and its other ports on the right, each with its name and
/// the bits that it has; clocks have a wedge.
class EntitySymbol : public QWidget {
    Q_OBJECT

public:
    explicit EntitySymbol(QWidget* parent);

    void setEntity(const QString& name, const std::vector<Preview::Port>& ports);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// A port as it is drawn.
    struct Pin {
        QString name;
        QString bits; ///< Such as "15:0"; empty for a single one.
        bool isClock;
    };
    using Pins = std::vector<Pin>;

    int getRowHeight() const;
    /// Of the widest of these texts.
    int getWidth(const Pins& pins, QString Pin::*text) const;
    void paintPins(QPainter& painter, const Pins& pins, const QRect& box, bool areLeft) const;

    QString _name;
    Pins _left;
    Pins _right;
};

} // namespace Velmora
