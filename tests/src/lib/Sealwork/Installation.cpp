#include "Installation.h"

#include <Sealwork/keys/Recipient.h>

#include <map>
#include <random>
#include <stdexcept>

#include <QDir>
#include <QFile>

Installation::Installation() {
    for (const auto* name : {"recipients", "signers", "scripts"})
        QDir(_directory.path()).mkdir(QLatin1String(name));
    qputenv("VELMORA_SEAL_DIR", _directory.path().toLocal8Bit());
}

Installation::~Installation() {
    qunsetenv("VELMORA_SEAL_DIR");
}

QString Installation::path(const QString& relative) const {
    return _directory.filePath(relative);
}

QString Installation::write(const QString& relative, const QByteArray& content) const {
    QFile file(path(relative));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("Unable to write " + file.fileName().toStdString());
    return file.fileName();
}

void Installation::addScriptKey(const Sealwork::ScriptKey& key) const {
    write(QStringLiteral("scripts/") + QString::fromStdString(key.getFileName()), toBytes(key.getText().text()));
}

void Installation::addSigner(const Sealwork::AsymmetricKey& key) const {
    write(QStringLiteral("signers/%1.pem").arg(QString::fromStdString(key.getId())), toBytes(key.getPublicPem()));
}

void Installation::addRecipient(const QString& name, unsigned bits) const {
    write(QStringLiteral("recipients/%1.pem").arg(name),
          toBytes(Sealwork::Recipient::format("Velmora", name.toStdString(), rsaKey(bits))));
}

const Sealwork::AsymmetricKey& Installation::rsaKey(unsigned bits) {
    static std::map<unsigned, Sealwork::AsymmetricKey> keys;
    const auto key = keys.find(bits);
    return key != keys.end() ? key->second : keys.emplace(bits, Sealwork::AsymmetricKey::makeRsa(bits)).first->second;
}

PrivateKeyFile::PrivateKeyFile(const Sealwork::AsymmetricKey& key) {
    _file.open();
    _file.write(toBytes(key.getPrivatePem().text()));
    _file.close();
}

QByteArray toBytes(std::string_view text) {
    return {text.data(), static_cast<int>(text.size())};
}

QByteArray replaced(QByteArray text, const QByteArray& from, const QByteArray& to) {
    if (!text.contains(from))
        throw std::runtime_error("nothing to replace");
    return text.replace(from, to);
}

std::string mixedBytes(std::size_t size) {
    std::mt19937 generator(static_cast<unsigned>(size));
    std::string text(size, '\0');
    for (auto& character : text)
        character = static_cast<char>(generator());
    return text;
}
