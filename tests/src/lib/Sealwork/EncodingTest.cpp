#include "EncodingTest.h"

#include "Failure.h"
#include "Installation.h"

#include <Sealwork/Base64LineEncoder.h>
#include <Sealwork/EnvelopeDirective.h>
#include <Sealwork/SealConfiguration.h>

#include <vector>

#include <QtTest>

namespace {

std::span<const std::uint8_t> asBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

QByteArray referenceLines(const QByteArray& bytes) {
    const QByteArray characters = bytes.toBase64();
    QByteArray lines;
    for (int begin = 0; begin < characters.size(); begin += 76)
        lines += characters.mid(begin, 76) + '\n';
    return lines;
}

} // namespace

void EncodingTest::base64InLines() {
    for (std::size_t size = 0; size < 240; ++size) {
        const auto bytes = mixedBytes(size);
        const auto expected = referenceLines(toBytes(bytes));
        QCOMPARE(Sealwork::base64LinesSize(size), static_cast<std::size_t>(expected.size()));
        for (const std::size_t pieceSize : {1UL, 7UL, 57UL, 100UL, 240UL}) {
            std::string lines;
            Sealwork::Base64LineEncoder encoder(lines);
            for (std::size_t begin = 0; begin < size; begin += pieceSize)
                encoder.append(asBytes(std::string_view(bytes).substr(begin, pieceSize)));
            encoder.finish();
            QCOMPARE(toBytes(lines), expected);
        }
        std::vector<std::uint8_t> decoded(size);
        QVERIFY(Sealwork::decodeBase64Lines(expected.toStdString(), decoded));
        QVERIFY(std::ranges::equal(decoded, asBytes(bytes)));
    }
}

void EncodingTest::refusedBase64_data() {
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<int>("size");
    QTest::newRow("too few characters") << QByteArray("YWI=\n") << 4;
    QTest::newRow("too many characters") << QByteArray("YWJj\n") << 2;
    QTest::newRow("no padding") << QByteArray("YWIA\n") << 2;
    QTest::newRow("one padding of two") << QByteArray("YWA=\n") << 1;
    QTest::newRow("padding first") << QByteArray("YW=I\n") << 2;
    QTest::newRow("stray bits of two") << QByteArray("YWJ=\n") << 2;
    QTest::newRow("stray bits of one") << QByteArray("YR==\n") << 1;
    QTest::newRow("no line feed") << QByteArray("YWI= ") << 2;
    QTest::newRow("blank") << QByteArray("YW I\n") << 3;
    QTest::newRow("NUL") << QByteArray("YW\0I\n", 5) << 3;
    QTest::newRow("8-bit") << QByteArray("YW\xffI\n") << 3;
    QTest::newRow("alphabet of URLs") << QByteArray("YW_-\n") << 3;
    QTest::newRow("lines too short") << QByteArray(40, 'A') + '\n' + QByteArray(40, 'A') + '\n' << 60;
    QTest::newRow("one long line") << QByteArray(80, 'A') + "\n\n" << 60;
}

void EncodingTest::refusedBase64() {
    QFETCH(QByteArray, lines);
    QFETCH(int, size);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    QVERIFY(!Sealwork::decodeBase64Lines(lines.toStdString(), bytes));
}

void EncodingTest::base64IsCanonical() {
    for (const std::size_t size : {1UL, 2UL, 3UL, 59UL}) {
        const std::string good = referenceLines(toBytes(mixedBytes(size))).toStdString();
        for (std::size_t position = 0; position < good.size(); ++position)
            for (int value = 0; value < 256; ++value) {
                std::string lines = good;
                lines[position] = static_cast<char>(value);
                std::vector<std::uint8_t> bytes(size);
                if (!Sealwork::decodeBase64Lines(lines, bytes))
                    continue;
                std::string encoded;
                Sealwork::appendBase64Lines(encoded, bytes);
                QCOMPARE(encoded, lines);
            }
    }
}

void EncodingTest::base64WithWhiteSpace_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("bytes"); // null when refused
    QTest::newRow("nothing") << QByteArray(" \r\n") << QByteArray("");
    QTest::newRow("one line") << QByteArray("YWJj") << QByteArray("abc");
    QTest::newRow("anywhere") << QByteArray("\tY W\r\nI\n=\n\n") << QByteArray("ab");
    QTest::newRow("long line") << QByteArray(160, 'A') << QByteArray(120, '\0');
    QTest::newRow("padding in the middle") << QByteArray("YQ==YQ==") << QByteArray();
    QTest::newRow("cut") << QByteArray("YWJ") << QByteArray();
    QTest::newRow("padding alone") << QByteArray("=") << QByteArray();
    QTest::newRow("three paddings") << QByteArray("Y===") << QByteArray();
    QTest::newRow("stray bits") << QByteArray("YWJ=") << QByteArray();
    QTest::newRow("other character") << QByteArray("YW`j") << QByteArray();
}

void EncodingTest::base64WithWhiteSpace() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, bytes);
    const auto decoded = Sealwork::decodeBase64Text(text.toStdString());
    QCOMPARE(decoded.has_value(), !bytes.isNull());
    QVERIFY(!decoded || std::ranges::equal(*decoded, asBytes({bytes.data(), static_cast<std::size_t>(bytes.size())})));
}

void EncodingTest::directiveExpressions_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected"); // name:value, separated by "; "
    const QString unreadable = QStringLiteral("unreadable");
    QTest::newRow("name") << QByteArray(" KEY_block\r") << "key_block:";
    QTest::newRow("values") << QByteArray("a=\"x, y=(z)\",b = 1 , c=( d=\"e\", f=2 )")
                            << "a:x, y=(z); b:1; c: d=\"e\", f=2 ";
    QTest::newRow("empty value") << QByteArray("a=\"\"") << "a:";
    QTest::newRow("nothing") << QByteArray(" ") << unreadable;
    QTest::newRow("two words") << QByteArray("a b") << unreadable;
    QTest::newRow("no value") << QByteArray("a=") << unreadable;
    QTest::newRow("no end of the text") << QByteArray("a=\"b") << unreadable;
    QTest::newRow("no end of the list") << QByteArray("a=(b") << unreadable;
    QTest::newRow("comma at the end") << QByteArray("a,") << unreadable;
    QTest::newRow("text behind") << QByteArray("a=\"b\"c") << unreadable;
}

void EncodingTest::directiveExpressions() {
    QFETCH(QByteArray, text);
    const auto bytes = text.toStdString();
    const auto expressions = Sealwork::parseExpressions(bytes);
    QStringList result;
    for (const auto& [name, value] : expressions.value_or(std::vector<Sealwork::DirectiveExpression>()))
        result << QString::fromStdString(name + ":" + value);
    QTEST(expressions ? result.join(QLatin1String("; ")) : QStringLiteral("unreadable"), "expected");
}

void EncodingTest::blockDirectives_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("expected");
    QTest::newRow("VHDL") << QByteArray("`protect key_block") << true;
    QTest::newRow("Verilog") << QByteArray("`pragma protect data_block") << true;
    QTest::newRow("blanks and CR") << QByteArray(" \t`pragma \t protect  data_block \r") << true;
    QTest::newRow("after others") << QByteArray("`protect encoding=(bytes=3), key_block") << true;
    QTest::newRow("other directive") << QByteArray("`protect begin_protected") << false;
    QTest::newRow("not at the end") << QByteArray("`protect data_block follows") << false;
    QTest::newRow("part of a word") << QByteArray("`protect my_key_block") << false;
    QTest::newRow("no directive") << QByteArray("protect key_block") << false;
    QTest::newRow("after text") << QByteArray("x `protect key_block") << false;
    QTest::newRow("in a comment") << QByteArray("-- `protect key_block") << false;
    QTest::newRow("joined pragma") << QByteArray("`pragmaprotect key_block") << false;
    QTest::newRow("longer word") << QByteArray("`protected key_block") << false;
    QTest::newRow("nothing between") << QByteArray("`protectkey_block") << false;
    QTest::newRow("directive alone") << QByteArray("`protect") << false;
    QTest::newRow("backtick alone") << QByteArray("`") << false;
}

void EncodingTest::blockDirectives() {
    QFETCH(QByteArray, line);
    QTEST(Sealwork::isBlockDirective(line.toStdString()), "expected");
}

void EncodingTest::configurations_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    const auto refused = [](int line, const char* reason) {
        return QStringLiteral("Fatal: Bad seal configuration [line=%1] [reason=%2]")
            .arg(line)
            .arg(QLatin1String(reason));
    };
    QTest::newRow("empty") << QByteArray() << "aes256-cbc";
    QTest::newRow("comment") << QByteArray("# data_method = aes128-cbc\n\n") << "aes256-cbc";
    QTest::newRow("128 bits") << QByteArray("data_method = aes128-cbc\n") << "aes128-cbc";
    QTest::newRow("256 bits, CRLF, no end") << QByteArray("\r\n  data_method=aes256-cbc") << "aes256-cbc";
    QTest::newRow("unknown method") << QByteArray("\ndata_method = des\n")
                                    << refused(2, "data_method is neither aes128-cbc nor aes256-cbc");
    QTest::newRow("upper case") << QByteArray("data_method = AES256-CBC")
                                << refused(1, "data_method is neither aes128-cbc nor aes256-cbc");
    QTest::newRow("unknown key") << QByteArray("data_methods = aes128-cbc\n")
                                 << refused(1, "unknown key \"data_methods\"");
    QTest::newRow("no value") << QByteArray("data_method\n") << refused(1, "not \"key = value\"");
    QTest::newRow("twice") << QByteArray("data_method = aes128-cbc\ndata_method = aes128-cbc\n")
                           << refused(2, "data_method is given twice");
}

void EncodingTest::configurations() {
    QFETCH(QByteArray, text);
    QString result;
    const auto failure = failureOf(
        [&] {
            const auto configuration = Sealwork::SealConfiguration::parse(text.toStdString(), "seal.conf");
            result = QString::fromLatin1(toBytes(Sealwork::getName(configuration.dataMethod)));
        },
        {"line", "reason"});
    QTEST(failure.isEmpty() ? result : failure, "expected");
}
