#pragma once

#include <QObject>

/// Protected regions: the envelopes are opened by the `openssl` command alone.
class EnvelopeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knownEnvelope();
    void openedElsewhere_data();
    void openedElsewhere();
    void noTwoAlike();
    void refusedRegions_data();
    void refusedRegions();
    void regionTooLarge();
    void brokenInstallation();
    void failureHalfWay();
    void acceptedByVerilator();
    void directivesKnownToGhdl();
};
