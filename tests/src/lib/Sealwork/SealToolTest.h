#pragma once

#include "Installation.h"

#include <memory>

#include <QObject>

/// The command line program.
class SealToolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void madeKeysWork();
    void keptKeys();
    void passphrases();
    void exitStatus_data();
    void exitStatus();
    void filesAreWholeOrMissing();
    void noRandomNumbers();

private:
    std::unique_ptr<Installation> _installation; ///< Of the rows of `exitStatus`, none of which may change it.
};
