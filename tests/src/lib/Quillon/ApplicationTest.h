#pragma once

#include <QObject>

class ApplicationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsWhoItIs();
    void takesItsOptionsOutOfTheArguments_data();
    void takesItsOptionsOutOfTheArguments();
    void themeComesFromSettings_data();
    void themeComesFromSettings();
    void secondApplicationIsRefused();
    void returnsTheResultOfTheLoop();
    void exceptionsLeaveEveryLoop_data();
    void exceptionsLeaveEveryLoop();
    void firstExceptionIsKept();
};
