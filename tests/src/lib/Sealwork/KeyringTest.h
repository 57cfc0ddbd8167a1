#pragma once

#include <QObject>

/// The keys of an installation: which files are taken, which are refused and how.
class KeyringTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recipientsInOrderOfFileName();
    void refusedRecipients_data();
    void refusedRecipients();
    void missingRecipients();
    void refusedScriptKeys_data();
    void refusedScriptKeys();
    void refusedSigners_data();
    void refusedSigners();
    void placeOfTheKeys();
};
