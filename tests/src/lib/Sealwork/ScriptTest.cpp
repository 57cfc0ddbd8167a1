#include <support/TestTable.h>

#include "Failure.h"
#include "Installation.h"
#include "Tool.h"

#include <Sealwork/Crypto.h>
#include <Sealwork/script/ScriptContainer.h>
#include <Sealwork/script/ScriptOpener.h>
#include <Sealwork/script/ScriptSealer.h>

#include <openssl/err.h>

#include <optional>

#include <QCryptographicHash>
#include <QDir>
#include <QtTest>

namespace {

using Sealwork::ScriptContainer;

const QByteArray fixedContainer("-----BEGIN VELMORA SEALED SCRIPT-----\n"
                                "Format: 1\n"
                                "Cipher: AES-256-GCM\n"
                                "Key-Id: 630dcd2966c43366\n"
                                "Nonce: 000102030405060708090a0b\n"
                                "Length: 6\n"
                                "\n"
                                "PyLrO/Tv98KIxJM54SAkvu1hIeyGzQ==\n"
                                "-----END VELMORA SEALED SCRIPT-----\n");

Sealwork::ScriptKey fixedKey() {
    return *Sealwork::ScriptKey::parse("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f\n");
}

QByteArray replaced(QByteArray text, const QByteArray& from, const QByteArray& to) {
    if (!text.contains(from))
        qFatal("nothing to replace");
    return text.replace(from, to);
}

/// A signer's two halves, the private one as the sealer takes it.
struct Signer {
    Signer() {
        const auto file = directory.filePath("signer.private.pem");
        QFile pem(file);
        pem.open(QIODevice::WriteOnly);
        pem.write(toBytes(key.getPrivatePem().text()));
        pem.close();
        half.emplace(Sealwork::ScriptSigner::load(file.toStdString(), nullptr));
    }

    Sealwork::AsymmetricKey key = Sealwork::AsymmetricKey::makeEd25519();
    QTemporaryDir directory;
    std::optional<Sealwork::ScriptSigner> half;
};

/// What the program gets for the text; where it is refused, checks that the output is left alone.
QString openInstalled(const std::string& text, std::string& script) {
    std::string out = "as it was";
    auto failure = failureOf([&] { Sealwork::Crypto(1).getDecrypted(0, text, out); }, {"keyId", "signer"});
    if (failure.isEmpty())
        script = out;
    else if (out != "as it was")
        return QStringLiteral("output changed");
    return failure;
}

QString openInstalled(const std::string& text) {
    std::string script;
    return openInstalled(text, script);
}

QString refusedFor(const char* reason, const char* field = nullptr, const std::string& value = {}) {
    const auto text = QStringLiteral("Fatal: Script refused: ") + QLatin1String(reason);
    return field ? QStringLiteral("%1 [%2=%3]").arg(text, QLatin1String(field), QString::fromStdString(value)) : text;
}

} // namespace

/// Sealing and opening of scripts.
class ScriptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knownContainer();
    void roundTrips();
    void signatureHoldsElsewhere();
    void alterations_data();
    void alterations();
    void refusedTexts();
    void keysAndSigners();
    void unsealable();
    void longestContainer();
    void badRequests();
};

void ScriptTest::knownContainer() {
    const Installation installation;
    installation.addScriptKey(fixedKey());
    std::string script;
    QCOMPARE(openInstalled(fixedContainer.toStdString(), script), QString());
    QCOMPARE(script, std::string("x = 1\n"));
    QCOMPARE(openInstalled(QByteArray(fixedContainer).replace("\n", "\r\n").toStdString(), script), QString());
    QCOMPARE(script, std::string("x = 1\n"));
}

void ScriptTest::roundTrips() {
    const auto key = Sealwork::ScriptKey::make();
    const Signer signer;
    for (const std::size_t size : {0UL, 1UL, 41UL, 57UL, 100'000UL}) {
        const Installation installation;
        installation.addScriptKey(Sealwork::ScriptKey::make());
        installation.addScriptKey(key);
        const auto script = mixedBytes(size);
        const auto plain = Sealwork::ScriptSealer(key).seal(script);
        const auto withSignature = Sealwork::ScriptSealer(key, &*signer.half).seal(script);
        for (const auto& sealed : {plain, withSignature, withSignature}) {
            std::string opened = "other";
            QCOMPARE(openInstalled(sealed, opened), QString());
            QVERIFY(opened == script);
            QVERIFY(ScriptContainer::parse(sealed).format() == sealed);
            if (sealed == withSignature)
                installation.addSigner(signer.key); // whose signature counts from now on
        }
        QVERIFY(Sealwork::ScriptSealer(key).seal(script) != plain);
    }
}

void ScriptTest::signatureHoldsElsewhere() {
    const Signer signer;
    const auto key = Sealwork::ScriptKey::make();
    const auto sealed = toBytes(Sealwork::ScriptSealer(key, &*signer.half).seal(mixedBytes(200)));
    const int headerSize = sealed.indexOf("\n\n") + 2;
    const int payloadEnd = sealed.indexOf("\n\n", headerSize);
    const auto payload = QByteArray::fromBase64(sealed.mid(headerSize, payloadEnd - headerSize));
    const auto digest = QCryptographicHash::hash(payload, QCryptographicHash::Sha256).toHex();
    const int signature = sealed.indexOf("Signature: ") + 11;
    const Installation installation;
    const auto message = installation.write("message", sealed.left(headerSize) + digest + "\n");
    const auto signatureFile = installation.write("signature", QByteArray::fromHex(sealed.mid(signature, 128)));
    const auto publicKey = installation.write("signer.pem", toBytes(signer.key.getPublicPem()));
    QVERIFY(openssl({"pkeyutl", "-verify", "-rawin", "-pubin", "-inkey", publicKey, "-in", message, "-sigfile",
                     signatureFile})
                .contains("Success"));
    const auto der = openssl({"pkey", "-pubin", "-outform", "DER", "-in", publicKey});
    QVERIFY(sealed.contains("\nSigner: " + QCryptographicHash::hash(der, QCryptographicHash::Sha256).toHex().left(16) +
                            "\n"));
}

void ScriptTest::alterations_data() {
    const TestTable<bool> table("isSigned");
    table.row("unsigned", false);
    table.row("signed", true);
}

void ScriptTest::alterations() {
    QFETCH(bool, isSigned);
    const Installation installation;
    const Signer signer;
    const auto key = Sealwork::ScriptKey::make();
    installation.addScriptKey(key);
    if (isSigned)
        installation.addSigner(signer.key);
    const auto keys = Sealwork::ScriptKeys::load(installation.path("scripts").toStdString());
    const auto signers = Sealwork::SignerKeys::load(installation.path("signers").toStdString());
    const Sealwork::ScriptOpener opener(keys, signers);
    const std::string script = "def generate(argDict):\n    return 'entity'\n";
    const auto sealed = Sealwork::ScriptSealer(key, isSigned ? &*signer.half : nullptr).seal(script);
    QCOMPARE(opener.open(sealed), script);

    const auto verifyRefused = [&](const std::string& text, std::size_t position, const char* change) {
        const auto failure = failureOf([&] { opener.open(text); });
        QVERIFY2(failure.startsWith("Fatal: Script refused: "),
                 qPrintable(QStringLiteral("%1 at %2: %3").arg(QLatin1String(change)).arg(position).arg(failure)));
    };
    for (std::size_t position = 0; position < sealed.size(); position += 7) {
        std::string text = sealed;
        text[position] = static_cast<char>(text[position] ^ (1 << position % 8));
        verifyRefused(text, position, "bit flipped");
        verifyRefused(sealed.substr(0, position), position, "truncated");
        verifyRefused(std::string(sealed).erase(position, 1), position, "byte dropped");
        verifyRefused(std::string(sealed).insert(position, 1, ' '), position, "blank inserted");
        if (sealed[position] == '\n')
            verifyRefused(std::string(sealed).insert(position, 1, '\n'), position, "line inserted");
    }
    verifyRefused(sealed + "x", sealed.size(), "text behind");
    verifyRefused(sealed + sealed, sealed.size(), "twice");
    verifyRefused("\n" + sealed, 0, "text in front");
    QCOMPARE(ERR_peek_error(), 0UL);
}

void ScriptTest::refusedTexts() {
    const Installation installation;
    installation.addScriptKey(fixedKey());
    const auto refusalOf = [](const QByteArray& from, const QByteArray& to) {
        return openInstalled(replaced(fixedContainer, from, to).toStdString());
    };
    const auto malformed = refusedFor("truncated or malformed");
    QCOMPARE(openInstalled("def generate(argDict):\n"), refusedFor("not a sealed script"));
    QCOMPARE(refusalOf("Format: 1", "Format: 2"), refusedFor("unsupported format"));
    QCOMPARE(refusalOf("0a0b\n", "0A0B\n"), malformed);
    QCOMPARE(refusalOf("Length: 6\n", "Length: 6\nLength: 6\n"), malformed);
    for (const char* length : {"5", "7", "06", "67108865", "18446744073709551622"})
        QCOMPARE(refusalOf("Length: 6\n", QByteArray("Length: ") + length + "\n"), malformed);
    QCOMPARE(refusalOf("GzQ==", "GzR=="), malformed); // stray bits
    QCOMPARE(refusalOf("Length: 6\n", "Length: 6\nSigner: 0011223344556677\n"), malformed);
    QCOMPARE(refusalOf("630dcd2966c43366", "630dcd2966c43367"),
             refusedFor("its key is not installed", "keyId", "630dcd2966c43367"));
    QCOMPARE(refusalOf("PyLr", "PyLs"), refusedFor("altered after it was sealed"));
    QCOMPARE(refusalOf("Nonce: 00", "Nonce: 01"), refusedFor("altered after it was sealed"));
    QCOMPARE(ERR_peek_error(), 0UL);
}

void ScriptTest::keysAndSigners() {
    const Installation installation;
    const Signer trusted;
    const Signer foreign;
    const auto key = Sealwork::ScriptKey::make();
    const auto bare = Sealwork::ScriptSealer(key).seal("bare");
    const auto good = Sealwork::ScriptSealer(key, &*trusted.half).seal("good");
    const auto bad = Sealwork::ScriptSealer(key, &*foreign.half).seal("bad");
    QCOMPARE(openInstalled(bare), refusedFor("its key is not installed", "keyId", key.getId()));
    installation.addScriptKey(key);
    QVERIFY(QDir(installation.path("signers")).removeRecursively());
    for (const auto& sealed : {bare, good, bad})
        QCOMPARE(openInstalled(sealed), QString());
    QDir(installation.path()).mkdir("signers");
    installation.addSigner(trusted.key);
    QCOMPARE(openInstalled(good), QString());
    QCOMPARE(openInstalled(bare), refusedFor("not signed"));
    QCOMPARE(openInstalled(bad), refusedFor("unknown signer", "signer", foreign.key.getId()));

    auto stripped = ScriptContainer::parse(good);
    stripped.signerId.reset();
    stripped.signature.reset();
    QCOMPARE(openInstalled(stripped.format()), refusedFor("not signed"));
    auto relabelled = ScriptContainer::parse(bad);
    relabelled.signerId = trusted.key.getId();
    QCOMPARE(openInstalled(relabelled.format()), refusedFor("altered after it was sealed"));
    auto transplanted = ScriptContainer::parse(Sealwork::ScriptSealer(key, &*trusted.half).seal("goad"));
    transplanted.signature = ScriptContainer::parse(good).signature;
    QCOMPARE(openInstalled(transplanted.format()), refusedFor("altered after it was sealed"));

    const auto signers = installation.path("signers");
    const auto signersElsewhere = installation.path("elsewhere");
    QVERIFY(QFile::rename(signers, signersElsewhere));
    const auto unreadable = QStringLiteral("Fatal: Unable to open key directory");
    QVERIFY(QFile::link(installation.path("nowhere"), signers)); // no wish to accept all
    QCOMPARE(openInstalled(bare), unreadable);
    QVERIFY(QFile::remove(signers));
    installation.write("signers", {});
    QCOMPARE(openInstalled(bare), unreadable);
    QVERIFY(QFile::remove(signers));
    QVERIFY(QFile::link(signersElsewhere, signers));
    QCOMPARE(openInstalled(bare), refusedFor("not signed"));

    installation.write("signers/zz.pem", "damaged");
    QVERIFY(openInstalled(good).startsWith("Fatal: Unable to read key file"));
    QVERIFY(QDir(installation.path("scripts")).removeRecursively());
    QVERIFY(openInstalled(good).startsWith("Fatal: Unable to open key directory"));
}

void ScriptTest::unsealable() {
    const auto key = Sealwork::ScriptKey::make();
    const Sealwork::ScriptSealer sealer(key);
    QCOMPARE(failureOf([&] { sealer.seal(std::string(ScriptContainer::largestScript + 1, 'x')); }, {"size"}),
             "InvalidRequest: Script too large [size=67108865]");
    QCOMPARE(failureOf([&] { sealer.seal(sealer.seal("x = 1\n")); }), "InvalidRequest: Script is sealed already");
}

void ScriptTest::longestContainer() {
    auto container = ScriptContainer::parse(fixedContainer.toStdString());
    container.payload.assign(ScriptContainer::largestScript + ScriptContainer::tagSize, 0);
    QCOMPARE(ScriptContainer::parse(container.format()).getScriptSize(), ScriptContainer::largestScript);
    container.payload.push_back(0);
    QCOMPARE(failureOf([&] { ScriptContainer::parse(container.format()); }), refusedFor("truncated or malformed"));
}

void ScriptTest::badRequests() {
    QCOMPARE(failureOf([] { Sealwork::Crypto crypto(2); }, {"mode"}), "InvalidRequest: Unknown mode [mode=2]");
    std::string out;
    QCOMPARE(failureOf([&] { Sealwork::Crypto(1).getDecrypted(1, fixedContainer.toStdString(), out); }, {"selector"}),
             "InvalidRequest: Unknown selector [selector=1]");
}

QTEST_GUILESS_MAIN(ScriptTest)
#include "ScriptTest.moc"
