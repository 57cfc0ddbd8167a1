#pragma once

#include <QObject>

class ConsoleWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsKindsInColors_data();
    void showsKindsInColors();
    void keepsTheLastLines();
    void followsTheEndUnlessScrolledUp();
    void menuCopiesSelectsAndClears();
    void stopsListeningWhenDestroyed();
};
