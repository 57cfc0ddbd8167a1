#include <support/TestTable.h>

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

QByteArray publicPem(const QStringList& makePrivateKey) {
    return openssl({"pkey", "-pubout"},
                   openssl(QStringList("genpkey") << QStringLiteral("-algorithm") << makePrivateKey));
}

} // namespace

/// The keys of an installation: which files are taken, which are refused and how.
class KeyringTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recipientsInOrderOfFileName();
    void refusedRecipients_data();
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

void KeyringTest::refusedRecipients_data() {
    const TestTable<QByteArray, QString> table("text", "fault");
    const QByteArray good = toBytes(Installation::rsaKey(2048).getPublicPem());
    const QByteArray odd2048 = QByteArray(510, 'f') + "01";
    const auto layout = QStringLiteral("not the lines Key-Owner and Key-Name and one public key");
    const auto badName = QStringLiteral("bad owner or name");
    const auto named = [&good](const QByteArray& owner, const QByteArray& name) {
        return "Key-Owner: " + owner + "\nKey-Name: " + name + "\n" + good;
    };
    table.row("2047 bits", header + madeUpRsaPem("7f" + odd2048.mid(2), "10001"), "shorter than 2048 bits [bits=2047]");
    table.row("8200 bits", header + madeUpRsaPem(QByteArray(2048, 'f') + "01", "10001"),
              "longer than 8192 bits [bits=8200]");
    table.row("exponent 3", header + madeUpRsaPem(odd2048, "3"), "exponent not odd or below 65537");
    table.row("even modulus", header + madeUpRsaPem(QByteArray(512, 'e'), "10001"), "damaged key");
    table.row("RSA-PSS", header + publicPem({"RSA-PSS"}), "not RSA");
    table.row("two keys", header + good + good, layout);
    table.row("quote", named("a\"b", "c"), badName);
    table.row("backtick", named("a", "c`"), badName);
    table.row("blank at the end", named("a", "c "), badName);
    table.row("too long", named("a", QByteArray(129, 'n')), badName);
    table.row("named twice", named("Velmora", "first"), "named twice");
}

void KeyringTest::refusedRecipients() {
    QFETCH(QByteArray, text);
    QFETCH(QString, fault);
    const Installation installation;
    installation.addRecipient("first", 2048);
    const auto file = installation.write("recipients/second.pem", text);
    const auto load = [&] { Sealwork::RecipientKeys::load(installation.path("recipients").toStdString()); };
    const auto refusal = QStringLiteral("Fatal: Recipient key refused: ");
    QCOMPARE(fault.contains("[bits=") ? failureOf(load, {"bits"}) : failureOf(load), refusal + fault);
    QVERIFY(failureOf(load, {"filename"}).endsWith(QStringLiteral(" [filename=%1]").arg(file)));
}

void KeyringTest::missingRecipients() {
    const Installation installation;
    const auto directory = installation.path("recipients");
    const auto load = [&] { Sealwork::RecipientKeys::load(directory.toStdString()); };
    QCOMPARE(failureOf(load, {"directory"}),
             QStringLiteral("Fatal: No recipient key installed [directory=%1]").arg(directory));
    QDir(directory).mkdir("folder.pem");
    QCOMPARE(failureOf(load, {"filename", "reason"}),
             QStringLiteral("Fatal: Unable to read key file [filename=%1/folder.pem] [reason=not a regular file]")
                 .arg(directory));
    QDir(directory).rmdir("folder.pem");
    QCOMPARE(mkfifo(qPrintable(directory + QStringLiteral("/pipe.pem")), S_IRUSR), 0); // nobody waits for a writer
    QVERIFY(failureOf(load, {"reason"}).endsWith(" [reason=not a regular file]"));
    QDir(directory).removeRecursively();
    QCOMPARE(failureOf(load, {"filename", "reason"}),
             QStringLiteral("Fatal: Unable to open key directory [filename=%1] [reason=No such file or directory]")
                 .arg(directory));
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
