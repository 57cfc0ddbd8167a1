#pragma once

#include <Sealwork/keys/AsymmetricKey.h>
#include <Sealwork/keys/ScriptKey.h>

#include <string_view>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QTemporaryFile>

/// A key directory of its own, to which VELMORA_SEAL_DIR points as long as it lives; with the empty directories
/// "recipients", "signers" and "scripts".
class Installation {
public:
    Installation();
    ~Installation();

    QString path(const QString& relative = {}) const;
    /// Writes a file and returns its path.
    QString write(const QString& relative, const QByteArray& content) const;
    void addScriptKey(const Sealwork::ScriptKey& key) const;
    void addSigner(const Sealwork::AsymmetricKey& key) const;
    /// Adds one of the key pairs below as recipient "Velmora" / `name`.
    void addRecipient(const QString& name, unsigned bits) const;

    /// RSA key pair of that length, made once per program.
    static const Sealwork::AsymmetricKey& rsaKey(unsigned bits);

private:
    QTemporaryDir _directory;
};

/// The private half of a key in a file, for as long as the object lives.
class PrivateKeyFile {
public:
    explicit PrivateKeyFile(const Sealwork::AsymmetricKey& key);
    QString path() const { return _file.fileName(); }

private:
    QTemporaryFile _file;
};

QByteArray toBytes(std::string_view text);

/// The text with each `from`, of which there has to be one at least, replaced.
QByteArray replaced(QByteArray text, const QByteArray& from, const QByteArray& to);

/// Bytes that look random, all values among them, the same ones for the same size.
std::string mixedBytes(std::size_t size);
