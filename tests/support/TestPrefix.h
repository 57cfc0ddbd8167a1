#pragma once

#include <support/ReadFile.h>

#include <Sealwork/keys/ScriptKey.h>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

/// An installation of a test's own: an empty catalogue, a script key and a recipient, which ORVANE_PREFIX points to.
/// While it lives, settings are kept in it and it is the working directory.
class TestPrefix {
public:
    TestPrefix();
    ~TestPrefix();

    QString path() const { return _directory.path(); }
    QString path(const QString& relativePath) const { return _directory.path() + "/" + relativePath; }
    /// Where the private key of the recipient lies, for opening envelopes.
    QString recipientKeyPath() const { return path(QStringLiteral("recipient-private.pem")); }

    /// Writes a file, making its directories; returns its path.
    QString write(const QString& relativePath, const QByteArray& content) const;
    /// Writes a generator script as the catalogue holds it: sealed.
    QString writeScript(const QString& relativePath, const QByteArray& script) const;
    /// Adds an IP directory with that description file and returns the file's path.
    QString addIP(const QString& directory, const QByteArray& description) const;
    /// Adds one of the shipped IPs, by its name, with its form, the script and further lines of its description;
    /// returns the path of its description file.
    QString addKnownIP(const QString& name, const QByteArray& script, const QByteArray& furtherLines = {}) const;
    QString addBridge(const QByteArray& script) const { return addKnownIP("APB slave to serial master", script); }

    /// The text of a sealed script.
    QByteArray seal(const QByteArray& script) const;

private:
    QTemporaryDir _directory;
    QString _earlierWorkingDirectory;
    Sealwork::ScriptKey _scriptKey;
};

/// The generator script that returns the value of a Python expression.
inline QByteArray returning(const QByteArray& expression) {
    return "def generate(argDict):\n  return " + expression + "\n";
}

QByteArray bytesOf(const Sealwork::SecureBuffer& buffer);
