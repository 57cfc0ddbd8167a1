#include "Failure.h"
#include "Installation.h"
#include "Tool.h"

#include <Sealwork/Crypto.h>
#include <Sealwork/script/ScriptContainer.h>
#include <Sealwork/script/ScriptOpener.h>
#include <Sealwork/script/ScriptSealer.h>

#include <openssl/err.h>

#include <vector>

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

/// A signer's two halves, the private one as the sealer takes it.
struct Signer {
    Sealwork::AsymmetricKey key = Sealwork::AsymmetricKey::makeEd25519();
    Sealwork::ScriptSigner half = Sealwork::ScriptSigner::load(PrivateKeyFile(key).path().toStdString(), nullptr);
};

/// What the program gets for the text, or the failure, which leaves the output alone.
QString openInstalled(const std::string& text, int selector = 0) {
    std::string out = "as it was";
    auto failure =
        failureOf([&] { Sealwork::Crypto(1).getDecrypted(selector, text, out); }, {"keyId", "signer", "selector"});
    if (failure.isEmpty())
        return QString::fromLatin1(toBytes(out));
    return out == "as it was" ? failure : QStringLiteral("output changed");
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
    void alterations();
    void refusedTexts();
    void keysAndSigners();
    void unsealable();
    void longestContainer();
};

void ScriptTest::knownContainer() {
    const Installation installation;
    installation.addScriptKey(fixedKey());
    QCOMPARE(openInstalled(fixedContainer.toStdString()), "x = 1\n");
    QCOMPARE(openInstalled(QByteArray(fixedContainer).replace("\n", "\r\n").toStdString()), "x = 1\n");
    QCOMPARE(openInstalled(fixedContainer.toStdString(), 1), "InvalidRequest: Unknown selector [selector=1]");
    QCOMPARE(failureOf([] { Sealwork::Crypto crypto(2); }, {"mode"}), "InvalidRequest: Unknown mode [mode=2]");
}

void ScriptTest::roundTrips() {
    const auto key = Sealwork::ScriptKey::make();
    const Signer signer;
    for (const std::size_t size : {0UL, 41UL, 100'000UL}) {
        const Installation installation;
        installation.addScriptKey(Sealwork::ScriptKey::make());
        installation.addScriptKey(key);
        const auto script = mixedBytes(size);
        const auto plain = Sealwork::ScriptSealer(key).seal(script);
        const auto withSignature = Sealwork::ScriptSealer(key, &signer.half).seal(script);
        for (const auto& sealed : {plain, withSignature}) {
            QVERIFY(openInstalled(sealed) == QString::fromLatin1(toBytes(script)));
            QVERIFY(ScriptContainer::parse(sealed).format() == sealed);
        }
        QVERIFY(Sealwork::ScriptSealer(key).seal(script) != plain);
    }
}

void ScriptTest::signatureHoldsElsewhere() {
    const Signer signer;
    const auto key = Sealwork::ScriptKey::make();
    const auto sealed = toBytes(Sealwork::ScriptSealer(key, &signer.half).seal(mixedBytes(200)));
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

void ScriptTest::alterations() {
    const Signer signer;
    const auto key = Sealwork::ScriptKey::make();
    const std::string script = "def generate(argDict):\n    return 'entity'\n";
    for (const bool isSigned : {false, true}) {
        const Installation installation;
        installation.addScriptKey(key);
        if (isSigned)
            installation.addSigner(signer.key);
        const auto keys = Sealwork::ScriptKeys::load(installation.path("scripts").toStdString());
        const auto signers = Sealwork::SignerKeys::load(installation.path("signers").toStdString());
        const Sealwork::ScriptOpener opener(keys, signers);
        const auto sealed = Sealwork::ScriptSealer(key, isSigned ? &signer.half : nullptr).seal(script);
        QCOMPARE(opener.open(sealed), script);
        std::vector<std::string> texts{sealed + "x", sealed + sealed, "\n" + sealed};
        for (std::size_t position = 0; position < sealed.size(); position += 7) {
            auto flipped = sealed;
            flipped[position] = static_cast<char>(flipped[position] ^ (1 << position % 8));
            texts.insert(texts.end(), {flipped, sealed.substr(0, position), std::string(sealed).erase(position, 1),
                                       std::string(sealed).insert(position, 1, ' ')});
        }
        for (auto end = sealed.find('\n'); end != sealed.npos; end = sealed.find('\n', end + 1))
            texts.push_back(std::string(sealed).insert(end, 1, '\n'));
        for (const auto& text : texts)
            QVERIFY2(failureOf([&] { opener.open(text); }).startsWith("Fatal: Script refused: "), text.data());
    }
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
    const auto good = Sealwork::ScriptSealer(key, &trusted.half).seal("good");
    const auto bad = Sealwork::ScriptSealer(key, &foreign.half).seal("bad");
    QCOMPARE(openInstalled(bare), refusedFor("its key is not installed", "keyId", key.getId()));
    installation.addScriptKey(key);
    QVERIFY(QDir(installation.path("signers")).removeRecursively());
    QCOMPARE(openInstalled(bare) + openInstalled(good) + openInstalled(bad), "baregoodbad");
    QDir(installation.path()).mkdir("signers");
    installation.addSigner(trusted.key);
    QCOMPARE(openInstalled(good), "good");
    QCOMPARE(openInstalled(bare), refusedFor("not signed"));
    QCOMPARE(openInstalled(bad), refusedFor("unknown signer", "signer", foreign.key.getId()));

    auto stripped = ScriptContainer::parse(good);
    stripped.signerId.reset();
    stripped.signature.reset();
    QCOMPARE(openInstalled(stripped.format()), refusedFor("not signed"));
    auto relabelled = ScriptContainer::parse(bad);
    relabelled.signerId = trusted.key.getId();
    QCOMPARE(openInstalled(relabelled.format()), refusedFor("altered after it was sealed"));
    auto transplanted = ScriptContainer::parse(Sealwork::ScriptSealer(key, &trusted.half).seal("goad"));
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

QTEST_GUILESS_MAIN(ScriptTest)
#include "ScriptTest.moc"
