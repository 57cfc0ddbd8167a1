#include "Failure.h"
#include "Installation.h"
#include "Tool.h"

#include <Sealwork/keys/KeyDirectory.h>
#include <Sealwork/keys/Recipient.h>
#include <Sealwork/keys/RecipientKeys.h>
#include <Sealwork/keys/ScriptKeys.h>
#include <Sealwork/keys/SignerKeys.h>

#include <sys/stat.h>

#include <QDir>
#include <QtTest>

namespace {

const QByteArray header("Key-Owner: Orvane\nKey-Name: key-1\n");
const QByteArray scriptKeyText = QByteArray("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f\n");

} // namespace

/// The keys of an installation: which files are taken, which are refused and how.
class KeyringTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recipientsInOrderOfFileName();
    void refusedRecipients();
    void missingRecipients();
    void refusedScriptKeys();
    void refusedSigners();
    void placeOfTheKeys();
};

void KeyringTest::recipientsInOrderOfFileName() {
    const Installation installation;
    for (const auto* name : {"b", "a", "B", "a.b"})
        installation.addRecipient(QLatin1String(name), 2048);
    installation.write("recipients/.hidden.pem", "no key");
    installation.write("recipients/README", "no key");
    QByteArray crlf = toBytes(Sealwork::Recipient::format("Tool Maker, Inc.", "c", Installation::rsaKey(2048)));
    installation.write("recipients/c.pem", crlf.replace("\n", "\r\n"));
    QStringList names;
    const auto keys = Sealwork::RecipientKeys::load(installation.path("recipients").toStdString());
    for (const auto& recipient : keys.getRecipients())
        names << QString::fromStdString(recipient.getOwner() + "/" + recipient.getName());
    QCOMPARE(names, QStringList({"Velmora/B", "Velmora/a.b", "Velmora/a", "Velmora/b", "Tool Maker, Inc./c"}));
}

void KeyringTest::refusedRecipients() {
    const auto verify = [](const QByteArray& text, const char* fault, const QString& bits = {}) {
        const Installation installation;
        installation.addRecipient("first", 2048);
        const auto file = installation.write("recipients/second.pem", text);
        const auto load = [&] { Sealwork::RecipientKeys::load(installation.path("recipients").toStdString()); };
        QCOMPARE(failureOf(load, {"filename", "bits"}),
                 QStringLiteral("Fatal: Recipient key refused: %1 [filename=%2]%3").arg(fault, file, bits));
    };
    const QByteArray odd2048 = QByteArray(510, 'f') + "01";
    verify(header + madeUpRsaPem("7f" + odd2048.mid(2), "10001"), "shorter than 2048 bits", " [bits=2047]");
    verify(header + madeUpRsaPem(QByteArray(2048, 'f') + "01", "10001"), "longer than 8192 bits", " [bits=8200]");
    verify(header + madeUpRsaPem(odd2048, "3"), "exponent not odd or below 65537");
    verify(header + madeUpRsaPem(QByteArray(512, 'e'), "10001"), "damaged key");
    verify(header + openssl({"pkey", "-pubout"}, openssl({"genpkey", "-algorithm", "RSA-PSS"})), "not RSA");
    const QByteArray good = toBytes(Installation::rsaKey(2048).getPublicPem());
    verify(header + good + good, "not the lines Key-Owner and Key-Name and one public key");
    const auto named = [&good](const QByteArray& owner, const QByteArray& name) {
        return "Key-Owner: " + owner + "\nKey-Name: " + name + "\n" + good;
    };
    for (const auto& text : {named("a\"b", "c"), named("a", "c`"), named("a", "c "), named("a", QByteArray(129, 'n'))})
        verify(text, "bad owner or name");
    verify(named("Velmora", "first"), "named twice");
}

void KeyringTest::missingRecipients() {
    const Installation installation;
    const QDir directory(installation.path("recipients"));
    const auto failure = [&] {
        const auto load = [&] { Sealwork::RecipientKeys::load(directory.path().toStdString()); };
        return failureOf(load, {"directory", "filename", "reason"}).replace(directory.path(), "@");
    };
    QCOMPARE(failure(), "Fatal: No recipient key installed [directory=@]");
    directory.mkdir("a.pem");
    QCOMPARE(failure(), "Fatal: Unable to read key file [filename=@/a.pem] [reason=not a regular file]");
    directory.rmdir("a.pem");
    QCOMPARE(mkfifo(qPrintable(directory.filePath("b.pem")), S_IRUSR), 0); // nobody waits for a writer
    QCOMPARE(failure(), "Fatal: Unable to read key file [filename=@/b.pem] [reason=not a regular file]");
    QDir(directory).removeRecursively();
    QCOMPARE(failure(), "Fatal: Unable to open key directory [filename=@] [reason=No such file or directory]");
}

void KeyringTest::refusedScriptKeys() {
    const auto reasonFor = [](const QString& name, const QByteArray& text) {
        const Installation installation;
        installation.write(QStringLiteral("scripts/") + name, text);
        return failureOf([&] { Sealwork::ScriptKeys::load(installation.path("scripts").toStdString()); }, {"reason"})
            .section("[reason=", 1)
            .section(": ", 0, 0);
    };
    const QString goodName = QStringLiteral("630dcd2966c43366.key");
    const QString wrongText = QStringLiteral("not 64 hexadecimal digits and a line feed]");
    QCOMPARE(reasonFor(goodName, scriptKeyText), QString());
    QCOMPARE(reasonFor("release.key", scriptKeyText), "not named after its key");
    QCOMPARE(reasonFor(goodName, QByteArray(scriptKeyText).replace("1f\n", "1e\n")), "not named after its key");
    QCOMPARE(reasonFor(goodName, scriptKeyText.trimmed()), wrongText);
    QCOMPARE(reasonFor(goodName, "00" + scriptKeyText), wrongText);
    QCOMPARE(reasonFor(goodName, QByteArray(70000, '0')), "larger than 64 KiB]");
}

void KeyringTest::refusedSigners() {
    const auto key = Sealwork::AsymmetricKey::makeEd25519();
    for (const auto& text : {toBytes(Installation::rsaKey(2048).getPublicPem()), toBytes(key.getPrivatePem().text()),
                             toBytes(key.getPublicPem() + key.getPublicPem())}) {
        const Installation installation;
        installation.write("signers/bad", text);
        QCOMPARE(failureOf([&] { Sealwork::SignerKeys::load(installation.path("signers").toStdString()); }, {"reason"}),
                 "Fatal: Unable to read key file [reason=not an Ed25519 public key]");
    }
}

void KeyringTest::placeOfTheKeys() {
    const auto base = [] { return QString::fromStdString(Sealwork::KeyDirectory::locate().getConfiguration()); };
    const auto earlierPrefix = qgetenv("ORVANE_PREFIX");
    qputenv("ORVANE_PREFIX", "/opt/orvane");
    qunsetenv("VELMORA_SEAL_DIR");
    QCOMPARE(base(), "/opt/orvane/etc/velmora/seal/seal.conf");
    qputenv("VELMORA_SEAL_DIR", "/keys");
    QCOMPARE(base(), "/keys/seal.conf");
    qputenv("VELMORA_SEAL_DIR", "");
    qunsetenv("ORVANE_PREFIX");
    QCOMPARE(failureOf(base, {"reason"}), "Fatal: Unable to open key directory "
                                          "[reason=neither VELMORA_SEAL_DIR nor ORVANE_PREFIX is set]");
    qunsetenv("VELMORA_SEAL_DIR");
    if (!earlierPrefix.isNull())
        qputenv("ORVANE_PREFIX", earlierPrefix);
}

QTEST_GUILESS_MAIN(KeyringTest)
#include "KeyringTest.moc"
