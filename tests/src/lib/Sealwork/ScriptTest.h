#pragma once

#include <QObject>

/// Sealing and opening of scripts.
class ScriptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knownContainer();
    void roundTrips_data();
    void roundTrips();
    void signatureHoldsElsewhere();
    void alterations_data();
    void alterations();
    void refusedTexts_data();
    void refusedTexts();
    void keysAndSigners();
    void unsealable();
    void longestContainer();
    void badRequests();
};
