#pragma once

#include <QObject>

class CollectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyOperationAgrees_data();
    void everyOperationAgrees();
    void listIsSeenAsItIsWhenWalked();
    void ownedListLivesWithItsViews();
    void memberFunctionsOfPointersAndValues();
    void nullParts();
    void randomOrderFollowsKeys_data();
    void randomOrderFollowsKeys();
    void randomOrdersDiffer();
    void driverWithoutReverseWalk();
};
