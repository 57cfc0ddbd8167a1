#include <support/TestTable.h>

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
#include <vector>

#include <sys/mman.h>

#include <QStandardPaths>
#include <QtTest>

namespace {

const std::string info = std::string("\x40\x81\xba\x01velmora\0\x2a\0\0\0", 16);
const QByteArray infoHex("4081ba0176656c6d6f7261002a000000");

struct KeyBlock {
    QByteArray name;
    QByteArray wrapped;
};

/// An envelope taken apart; whatever is not exactly as it should stand throws std::runtime_error.
class Envelope {
public:
    Envelope(const QByteArray& text, const QByteArray& directive) : _rest(text), _directive(directive) {
        take("begin_protected");
        take("version=1");
        take("encrypt_agent=\"Velmora\"");
        mac = takeBetween("encrypt_agent_info=\"Sealwork/1 info=" + infoHex + " mac=", "\"");
        while (!_rest.startsWith(_directive + "data_method")) {
            const auto name = takeBetween("key_keyowner=\"Velmora\", key_keyname=\"", "\", key_method=\"rsa\"");
            keyBlocks.push_back({name, takeBlock("key_block")});
        }
        method = takeBetween("data_method=\"", "\"");
        data = takeBlock("data_block");
        take("end_protected");
        if (!_rest.isEmpty())
            throw std::runtime_error("text behind the envelope");
    }

    QByteArray mac;
    std::vector<KeyBlock> keyBlocks;
    QByteArray method;
    QByteArray data;

private:
    QByteArray takeLine() {
        const int end = _rest.indexOf('\n');
        const auto line = _rest.left(end);
        _rest.remove(0, end + 1);
        return line;
    }

    void take(const QByteArray& directive) {
        const auto line = takeLine();
        if (line != _directive + directive)
            throw std::runtime_error("unexpected line " + line.toStdString());
    }

    QByteArray takeBetween(const QByteArray& before, const QByteArray& after) {
        const auto line = takeLine();
        const auto begin = _directive + before;
        if (!line.startsWith(begin) || !line.endsWith(after))
            throw std::runtime_error("unexpected line " + line.toStdString());
        return line.mid(begin.size(), line.size() - begin.size() - after.size());
    }

    QByteArray takeBlock(const QByteArray& directive) {
        const int size = takeBetween("encoding=(enctype=\"base64\", line_length=76, bytes=", ")").toInt();
        take(directive);
        QByteArray characters;
        for (auto line = takeLine(); !line.isEmpty(); line = takeLine()) {
            if (characters.size() % 76 != 0 || line.size() > 76)
                throw std::runtime_error("wrong line length");
            characters += line;
        }
        const auto bytes = QByteArray::fromBase64(characters);
        if (bytes.size() != size || bytes.toBase64() != characters)
            throw std::runtime_error("wrong block");
        return bytes;
    }

    QByteArray _rest;
    QByteArray _directive;
};

QByteArray hmac(const QByteArray& key, const QByteArray& message) {
    const auto output = openssl({"dgst", "-sha256", "-binary", "-mac", "HMAC", "-macopt",
                                 QStringLiteral("hexkey:") + QString::fromLatin1(key.toHex())},
                                message);
    return output;
}

QByteArray unwrap(const QByteArray& wrapped, const Sealwork::AsymmetricKey& key) {
    QTemporaryFile file;
    file.open();
    file.write(toBytes(key.getPrivatePem().text()));
    file.close();
    return openssl({"pkeyutl", "-decrypt", "-inkey", file.fileName(), "-pkeyopt", "rsa_padding_mode:pkcs1"}, wrapped);
}

QByteArray decipher(const Envelope& envelope, const QByteArray& sessionKey) {
    const auto cipher =
        envelope.method == "aes128-cbc" ? QStringLiteral("-aes-128-cbc") : QStringLiteral("-aes-256-cbc");
    return openssl({"enc", "-d", cipher, "-K", QString::fromLatin1(sessionKey.toHex()), "-iv",
                    QString::fromLatin1(envelope.data.left(16).toHex())},
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

const std::map<QByteArray, unsigned> recipients = {{"a", 2048}, {"b", 3072}, {"c", 2304}};

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
    void openedElsewhere_data();
    void openedElsewhere();
    void refusedRegions();
    void regionTooLarge();
    void brokenInstallation();
    void failureHalfWay();
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

void EnvelopeTest::openedElsewhere_data() {
    const TestTable<QByteArray, QByteArray, QByteArray, int> table("language", "directive", "method", "size");
    table.row("empty", "vhdl", "`protect ", "aes256-cbc", 0);
    table.row("cipher block", "vlog", "`pragma protect ", "aes128-cbc", 16);
    table.row("line of base64", "vhdl", "`protect ", "aes256-cbc", 57);
    table.row("more than a chunk", "vlog", "`pragma protect ", "aes128-cbc", 16385);
}

/// Twice, with nothing alike.
void EnvelopeTest::openedElsewhere() {
    QFETCH(QByteArray, language);
    QFETCH(QByteArray, directive);
    QFETCH(QByteArray, method);
    QFETCH(int, size);
    const Installation installation;
    addRecipients(installation);
    if (method != "aes256-cbc")
        installation.write("seal.conf", "data_method = " + method + "\n");
    const auto text = mixedBytes(static_cast<std::size_t>(size));
    const Envelope envelope(toBytes(encrypt(language.toStdString(), text)), directive);
    QCOMPARE(envelope.method, method);
    QCOMPARE(envelope.keyBlocks.size(), recipients.size());
    QByteArray sessionKey;
    for (const auto& block : envelope.keyBlocks) {
        const auto bits = recipients.at(block.name);
        QCOMPARE(block.wrapped.size(), static_cast<int>(bits / 8));
        const auto unwrapped = unwrap(block.wrapped, Installation::rsaKey(bits));
        QVERIFY(sessionKey.isEmpty() || unwrapped == sessionKey);
        sessionKey = unwrapped;
    }
    QCOMPARE(sessionKey.size(), method == "aes128-cbc" ? 16 : 32);
    QCOMPARE(expectedMac(envelope, language, sessionKey), envelope.mac);
    QVERIFY(decipher(envelope, sessionKey) == toBytes(text));
    const Envelope again(toBytes(encrypt(language.toStdString(), text)), directive);
    QVERIFY(again.data.left(16) != envelope.data.left(16) && again.mac != envelope.mac);
    QVERIFY(unwrap(again.keyBlocks[0].wrapped, Installation::rsaKey(recipients.at("a"))) != sessionKey);
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
    std::string out = "as it was";
    const auto encryptIt = [&out] { Sealwork::Crypto(1).getEncrypted(-1, "vhdl", info, "a\n", out); };
    QCOMPARE(failureOf(encryptIt), "Fatal: No recipient key installed");
    installation.addRecipient("a", 2048);
    installation.write("recipients/b.pem", "Key-Owner: a\nKey-Name: b\n-----BEGIN PUBLIC KEY-----\nAAAA\n"
                                           "-----END PUBLIC KEY-----\n");
    QVERIFY(failureOf(encryptIt).startsWith("Fatal: Recipient key refused: "));
    QFile::remove(installation.path("recipients/b.pem"));
    installation.write("seal.conf", "data_method = rot13\n");
    QCOMPARE(failureOf(encryptIt), "Fatal: Bad seal configuration");
    QCOMPARE(out, std::string("as it was"));
    QCOMPARE(ERR_peek_error(), 0UL);
}

void EnvelopeTest::failureHalfWay() {
    const Installation installation;
    installation.addRecipient("a", 2048);
    // A sound key whose exponent is longer than OpenSSL enciphers with for such a modulus.
    const auto soundKey = installation.write("sound.pem", toBytes(Installation::rsaKey(3080).getPublicPem()));
    const auto modulus = openssl({"rsa", "-pubin", "-in", soundKey, "-noout", "-modulus"});
    installation.write("recipients/b.pem",
                       "Key-Owner: O\nKey-Name: b\n" +
                           madeUpRsaPem(modulus.trimmed().mid(QByteArray("Modulus=").size()), "1000000000000000d"));
    std::string out = "as it was";
    QCOMPARE(failureOf([&out] { Sealwork::Crypto(1).getEncrypted(-1, "vhdl", info, "a\n", out); }, {"operation"}),
             "Fatal: Cryptography failure [operation=wrapping a session key]");
    QCOMPARE(out, std::string("as it was"));
    QCOMPARE(ERR_peek_error(), 0UL);
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

void EnvelopeTest::directivesKnownToGhdl() {
    if (QStandardPaths::findExecutable("ghdl").isEmpty())
        QSKIP("ghdl is not installed");
    const Installation installation;
    addRecipients(installation);
    const auto text = "entity top is\nend;\n" + toBytes(encrypt("vhdl", "architecture rtl of top is\nbegin\nend;\n"));
    const auto file = installation.write("top.vhd", text);
    const auto result = runTool("ghdl", {"-s", "--std=08", file});
    // It cannot decipher: it passes the directives over and stumbles over the first line of base64.
    const int firstBase64 = text.left(text.indexOf("key_block\n")).count('\n') + 2;
    QVERIFY2(result.errors.startsWith(QStringLiteral("%1:%2:").arg(file).arg(firstBase64).toLocal8Bit()),
             result.errors.constData());
}

QTEST_GUILESS_MAIN(EnvelopeTest)
#include "EnvelopeTest.moc"
