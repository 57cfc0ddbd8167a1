#pragma once

#include <QObject>

class PadTypeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void concretesAreDistinctAndHaveAVoltage();
    void voltageIsTheSecondPiece_data();
    void voltageIsTheSecondPiece();
};
