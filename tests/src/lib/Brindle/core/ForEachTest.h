#pragma once

#include <QObject>

class ForEachTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void breakAndContinueInNestedLoops();
    void leftByReturn();
    void elementRemovedByItsLoop();
    void keysAndValues();
};
