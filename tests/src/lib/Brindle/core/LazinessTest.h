#pragma once

#include <QObject>

class LazinessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stepsOfSource_data();
    void stepsOfSource();
};
