#include "Failure.h"
#include "Installation.h"
#include "Tool.h"

#include <Sealwork/Crypto.h>
#include <Sealwork/envelope/EnvelopeWriter.h>

#include <openssl/err.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <stdexcept>

#include <sys/mman.h>

#include <QStandardPaths>
#include <QtTest>

namespace {

const QByteArray infoHex("4081ba0176656c6d6f7261002a000000");
const std::string info = QByteArray::fromHex(infoHex).toStdString();

/// Names of the recipients and the lengths of their keys.
const std::map<QByteArray, unsigned> recipients = {{"a", 2048}, {"b", 2560}, {"c", 2304}};

/// An envelope for the recipients, taken apart; whatever is not exactly as it should stand throws std::runtime_error.
struct Envelope {
    Envelope(const QByteArray& text, const QByteArray& directive) {
        const QString block("@encoding=\\(enctype=\"base64\", line_length=76, bytes=(\\d+)\\)\n"
                            "@%1_block\n((?:.{76}\n)*.{1,76}\n)\n");
        QString layout = "\\A@begin_protected\n@version=1\n@encrypt_agent=\"Velmora\"\n"
                         "@encrypt_agent_info=\"Sealwork/1 info=" +
                         infoHex + " mac=([0-9a-f]{64})\"\n";
        for (const auto& [name, bits] : recipients)
            layout +=
                "@key_keyowner=\"Velmora\", key_keyname=\"" + name + "\", key_method=\"rsa\"\n" + block.arg("key");
        layout += "@data_method=\"(.*)\"\n" + block.arg("data") + "@end_protected\n\\z";
        const auto match = QRegularExpression(layout.replace("@", directive)).match(QString::fromLatin1(text));
        if (!match.hasMatch())
            throw std::runtime_error("not laid out as it should be:\n" + text.toStdString());
        QStringList parts = match.capturedTexts().mid(1);
        mac = parts.takeFirst().toLatin1();
        for (const auto& [name, bits] : recipients)
            wrapped[name] = takeBlock(parts);
        method = parts.takeFirst().toLatin1();
        data = takeBlock(parts);
    }

    QByteArray mac;
    std::map<QByteArray, QByteArray> wrapped; ///< The session key, by recipient.
    QByteArray method;
    QByteArray data;

private:
    static QByteArray takeBlock(QStringList& parts) {
        const int size = parts.takeFirst().toInt();
        const auto characters = parts.takeFirst().remove('\n').toLatin1();
        const auto bytes = QByteArray::fromBase64(characters);
        if (bytes.size() != size || bytes.toBase64() != characters)
            throw std::runtime_error("wrong block");
        return bytes;
    }
};

QByteArray hmac(const QByteArray& key, const QByteArray& message) {
    return openssl({"dgst", "-sha256", "-binary", "-mac", "HMAC", "-macopt", "hexkey:" + key.toHex()}, message);
}

QByteArray unwrap(const QByteArray& wrapped, const Sealwork::AsymmetricKey& key) {
    const PrivateKeyFile file(key);
    return openssl({"pkeyutl", "-decrypt", "-inkey", file.path(), "-pkeyopt", "rsa_padding_mode:pkcs1"}, wrapped);
}

QByteArray decipher(const Envelope& envelope, const QByteArray& sessionKey) {
    const char* cipher = envelope.method == "aes128-cbc" ? "-aes-128-cbc" : "-aes-256-cbc";
    return openssl({"enc", "-d", cipher, "-K", sessionKey.toHex(), "-iv", envelope.data.left(16).toHex()},
                   envelope.data.mid(16));
}

QByteArray expectedMac(const Envelope& envelope, const QByteArray& language, const QByteArray& sessionKey) {
    const auto message =
        "velmora-envelope-1\n" + language + "\n" + envelope.method + "\n" + infoHex + "\n" + envelope.data;
    return hmac(hmac(sessionKey, "velmora-envelope-mac-1"), message).toHex();
}

std::string encrypt(const std::string& language, const std::string& text) {
    std::string out;
    Sealwork::Crypto(1).getEncrypted(-1, language, info, text, out);
    return out;
}

void addRecipients(const Installation& installation) {
    for (const auto& [name, bits] : recipients)
        installation.addRecipient(QString::fromLatin1(name), bits);
}

} // namespace

/// Protected regions: the envelopes are opened by the `openssl` command alone.
class EnvelopeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knownEnvelope();
    void openedElsewhere();
    void refusedRegions();
    void regionTooLarge();
    void brokenInstallation();
    void acceptedByVerilator();
    void directivesKnownToGhdl();
};

void EnvelopeTest::knownEnvelope() {
    const Installation installation;
    addRecipients(installation);
    const auto keys = Sealwork::RecipientKeys::load(installation.path("recipients").toStdString());
    Sealwork::SessionKey session{Sealwork::SecureBuffer(32), {}};
    std::iota(session.key.data(), session.key.data() + session.key.size(), std::uint8_t{0});
    std::copy_n(session.key.data() + 16, session.initial.size(), session.initial.begin());
    const Sealwork::ProtectedRegion region("vlog", info, "assign a = b;\n");
    std::string text;
    Sealwork::EnvelopeWriter(keys, Sealwork::DataMethod::Aes256Cbc).append(text, region, session);
    const Envelope envelope(toBytes(text), "`pragma protect ");
    QCOMPARE(envelope.data.toBase64(), QByteArray("EBESExQVFhcYGRobHB0eH3CT+ytm2ITUp+Rue9kB3Vo="));
    QCOMPARE(envelope.mac, QByteArray("5bc70b7e750ae0c03ea6037205e54cb45a2b649da28c9f8b26798f3f706ad28e"));
}

/// Twice, with nothing alike.
void EnvelopeTest::openedElsewhere() {
    const auto verify = [](const char* language, const char* directive, const QByteArray& method, std::size_t size) {
        const Installation installation;
        addRecipients(installation);
        if (method != "aes256-cbc")
            installation.write("seal.conf", "data_method = " + method + "\n");
        const auto text = mixedBytes(size);
        const Envelope envelope(toBytes(encrypt(language, text)), directive);
        QCOMPARE(envelope.method, method);
        const auto keyOf = [](const Envelope& any, const QByteArray& name) {
            return unwrap(any.wrapped.at(name), Installation::rsaKey(recipients.at(name)));
        };
        const auto sessionKey = keyOf(envelope, "a");
        QCOMPARE(sessionKey.size(), method == "aes128-cbc" ? 16 : 32);
        QVERIFY(keyOf(envelope, "b") == sessionKey && keyOf(envelope, "c") == sessionKey);
        QCOMPARE(expectedMac(envelope, language, sessionKey), envelope.mac);
        QVERIFY(decipher(envelope, sessionKey) == toBytes(text));
        const Envelope again(toBytes(encrypt(language, text)), directive);
        QVERIFY(again.data.left(16) != envelope.data.left(16) && again.mac != envelope.mac);
        QVERIFY(keyOf(again, "a") != sessionKey);
    };
    verify("vhdl", "`protect ", "aes256-cbc", 57);           // a line of base64
    verify("vlog", "`pragma protect ", "aes128-cbc", 16385); // more than a chunk
    verify("vhdl", "`protect ", "aes256-cbc", 1500001);      // by two threads
}

void EnvelopeTest::refusedRegions() {
    const Installation installation;
    installation.addRecipient("a", 2048);
    const auto refusalOf = [](int selector, const char* language, std::size_t infoSize, const std::string& text) {
        std::string out = "as it was";
        const auto refusal = failureOf(
            [&] { Sealwork::Crypto(1).getEncrypted(selector, language, std::string(infoSize, 'i'), text, out); },
            {"selector", "language", "size", "line"});
        return refusal.isEmpty() == (out == "as it was") ? QStringLiteral("wrong output") : refusal;
    };
    QCOMPARE(refusalOf(1, "vhdl", 16, "a\n"), "InvalidRequest: Unknown selector [selector=1]");
    QCOMPARE(refusalOf(-1, "VHDL", 16, "a\n"), "InvalidRequest: Unknown language [language=VHDL]");
    QCOMPARE(refusalOf(-1, "vlog", 17, "a\n"), "InvalidRequest: Information block should be 16 bytes [size=17]");
    QCOMPARE(refusalOf(-1, "vlog", 16, "`define A\nx `A ``\n\n \t`pragma protect data_block \r\nAAAA\n"),
             "Fatal: Region already holds a protected envelope [line=4]");
    QCOMPARE(refusalOf(-1, "vhdl", 16, "`protect begin_protected\n` ` `\n-- `protect data_block\n`"), QString());
}

void EnvelopeTest::regionTooLarge() {
    constexpr std::size_t size = Sealwork::ProtectedRegion::largestRegion + 1;
    // Pages that are never touched take no memory.
    void* const pages = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    QVERIFY(pages != MAP_FAILED);
    const std::string_view text(static_cast<const char*>(pages), size);
    QCOMPARE(failureOf([&] { Sealwork::ProtectedRegion("vhdl", info, text); }, {"size"}),
             "InvalidRequest: Region too large [size=1073741825]");
    munmap(pages, size);
}

void EnvelopeTest::brokenInstallation() {
    const Installation installation;
    const auto failure = [] {
        std::string out = "as it was";
        const auto text =
            failureOf([&] { Sealwork::Crypto(1).getEncrypted(-1, "vhdl", info, "a\n", out); }, {"operation"});
        return out == "as it was" && ERR_peek_error() == 0 ? text : QStringLiteral("something is left");
    };
    QCOMPARE(failure(), "Fatal: No recipient key installed");
    installation.addRecipient("a", 2048);
    const QByteArray header("Key-Owner: a\nKey-Name: b\n");
    installation.write("recipients/b.pem", header + "-----BEGIN PUBLIC KEY-----\nAAAA\n-----END PUBLIC KEY-----\n");
    QVERIFY(failure().startsWith("Fatal: Recipient key refused: "));
    // No small factor, but an exponent that is longer than OpenSSL enciphers with for such a modulus: fails half way.
    installation.write("recipients/b.pem", header + madeUpRsaPem(QByteArray(768, 'f') + "000b", "1000000000000000d"));
    QCOMPARE(failure(), "Fatal: Cryptography failure [operation=wrapping a session key]");
    installation.write("seal.conf", "data_method = rot13\n");
    QCOMPARE(failure(), "Fatal: Bad seal configuration");
}

void EnvelopeTest::acceptedByVerilator() {
    if (QStandardPaths::findExecutable("verilator").isEmpty())
        QSKIP("verilator is not installed");
    const Installation installation;
    addRecipients(installation);
    const auto file = installation.write("top.v", "module top(input a, output b);\nassign b = a;\n" +
                                                      toBytes(encrypt("vlog", "wire c;\n")) + "endmodule\n");
    const auto result = runTool("verilator", {"--lint-only", "-Wno-PROTECTED", file});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
}

/// It cannot decipher: it passes the directives over and stumbles over the first line of base64.
void EnvelopeTest::directivesKnownToGhdl() {
    if (QStandardPaths::findExecutable("ghdl").isEmpty())
        QSKIP("ghdl is not installed");
    const Installation installation;
    addRecipients(installation);
    const auto text = "entity top is\nend;\n" + toBytes(encrypt("vhdl", "architecture rtl of top is\nbegin\nend;\n"));
    const auto file = installation.write("top.vhd", text);
    const int firstBase64 = text.left(text.indexOf("key_block\n")).count('\n') + 2;
    const auto errors = runTool("ghdl", {"-s", "--std=08", file}).errors;
    QVERIFY2(errors.startsWith(QStringLiteral("%1:%2:").arg(file).arg(firstBase64).toLocal8Bit()), errors.constData());
}

QTEST_GUILESS_MAIN(EnvelopeTest)
#include "EnvelopeTest.moc"
