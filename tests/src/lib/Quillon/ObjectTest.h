#pragma once

#include <QObject>

class ObjectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void runsEveryStep_data();
    void runsEveryStep();
    void describesItself();
};
