#pragma once

#include <Sealwork/keys/AsymmetricKey.h>
#include <Sealwork/keys/ScriptKey.h>

#include <string_view>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

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

QByteArray toBytes(std::string_view text);

/// Bytes that look random, all values among them, the same ones for the same size.
std::string mixedBytes(std::size_t size);
