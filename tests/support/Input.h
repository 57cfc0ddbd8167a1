#pragma once

#include <QApplication>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

/// Turns the wheel by one step towards the user, as the window system tells it.
inline void turnWheel(QWidget* widget) {
    const QPointF position = widget->rect().center();
    QWheelEvent event(position, widget->mapToGlobal(position.toPoint()), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event); // only what the window system sends goes on to the parents
    qApp->notify(widget, &event);
}
