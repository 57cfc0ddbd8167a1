#pragma once

#include "Installation.h"
#include "Tool.h"

#include <memory>

#include <QObject>

/// The commands of velmora-seal that protect and open, and those that look after keys.
class SealToolEnvelopeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void protectedFilesOpenAgain_data();
    void protectedFilesOpenAgain();
    void standardStreams();
    void chosenRecipients();
    void refusals_data();
    void refusals();
    void foreignEnvelopes();
    void information();
    void unsealing();
    void encipheredPrivateKeys();
    void addedRecipients();
    void refusedRecipients_data();
    void refusedRecipients();
    void checkedRecipients();

private:
    /// Runs the command line, in which "@" stands for the installation's directory.
    ToolResult run(const char* line, const QByteArray& input = {}) const;
    /// What it says on standard error, "@" for the directory and without the tool's name in front.
    QByteArray errorsOf(const ToolResult& result) const;
    /// A file of the directory.
    QByteArray read(const char* name) const;

    std::unique_ptr<Installation> _installation; ///< With the recipient "a", whose private half is "a.private.pem".
};
