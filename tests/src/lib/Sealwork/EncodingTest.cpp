#include <support/TestTable.h>

#include "Failure.h"
#include "Installation.h"

#include <Sealwork/base/Base64LineEncoder.h>
#include <Sealwork/envelope/EnvelopeDirective.h>
#include <Sealwork/envelope/SealConfiguration.h>

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

/// The text forms below the cryptography: base64 lines, block directives, configuration.
class EncodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void base64InLines();
    void refusedBase64_data();
    void refusedBase64();
    void base64IsCanonical();
    void base64WithWhiteSpace_data();
    void base64WithWhiteSpace();
    void directiveExpressions_data();
    void directiveExpressions();
    void blockDirectives_data();
    void blockDirectives();
    void configurations_data();
    void configurations();
};

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
    const TestTable<QByteArray, int> table("lines", "size");
    table.row("too few characters", "YWI=\n", 4);
    table.row("too many characters", "YWJj\n", 2);
    table.row("lines too short", QByteArray(40, 'A') + '\n' + QByteArray(40, 'A') + '\n', 60);
    table.row("one long line", QByteArray(80, 'A') + "\n\n", 60);
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
    const TestTable<QByteArray, QByteArray> table("text", "bytes"); // bytes: null when refused
    table.row("nothing", " \r\n", "");
    table.row("one line", "YWJj", "abc");
    table.row("anywhere", "\tY W\r\nI\n=\n\n", "ab");
    table.row("long line", QByteArray(160, 'A'), QByteArray(120, '\0'));
    table.row("padding in the middle", "YQ==YQ==", {});
    table.row("cut", "YWJ", {});
    table.row("padding alone", "=", {});
    table.row("three paddings", "Y===", {});
    table.row("stray bits", "YWJ=", {});
    table.row("other character", "YW`j", {});
}

void EncodingTest::base64WithWhiteSpace() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, bytes);
    const auto decoded = Sealwork::decodeBase64Text(text.toStdString());
    QCOMPARE(decoded.has_value(), !bytes.isNull());
    QVERIFY(!decoded || std::ranges::equal(*decoded, asBytes({bytes.data(), static_cast<std::size_t>(bytes.size())})));
}

void EncodingTest::directiveExpressions_data() {
    const TestTable<QByteArray, QString> table("text", "expected"); // expected: name:value, separated by "; "
    const QString unreadable = QStringLiteral("unreadable");
    table.row("name", " KEY_block\r", "key_block:");
    table.row("values", "a=\"x, y=(z)\",b = 1 , c=( d=\"e\", f=2 )", "a:x, y=(z); b:1; c: d=\"e\", f=2 ");
    table.row("empty value", "a=\"\"", "a:");
    table.row("nothing", " ", unreadable);
    table.row("two words", "a b", unreadable);
    table.row("no value", "a=", unreadable);
    table.row("no end of the text", "a=\"b", unreadable);
    table.row("no end of the list", "a=(b", unreadable);
    table.row("comma at the end", "a,", unreadable);
    table.row("text behind", "a=\"b\"c", unreadable);
}

void EncodingTest::directiveExpressions() {
    QFETCH(QByteArray, text);
    const auto bytes = text.toStdString();
    const auto expressions = Sealwork::parseExpressions(bytes);
    QStringList result;
    for (const auto& [name, value] : expressions.value_or(std::vector<Sealwork::DirectiveExpression>()))
        result << QString::fromStdString(std::string(name).append(":").append(value));
    QTEST(expressions ? result.join("; ") : QStringLiteral("unreadable"), "expected");
}

void EncodingTest::blockDirectives_data() {
    const TestTable<QByteArray, bool> table("line", "expected");
    table.row("VHDL", "`protect key_block", true);
    table.row("Verilog", "`pragma protect data_block", true);
    table.row("blanks and CR", " \t`pragma \t protect  data_block \r", true);
    table.row("after others", "`protect encoding=(bytes=3), key_block", true);
    table.row("other directive", "`protect begin_protected", false);
    table.row("not at the end", "`protect data_block follows", false);
    table.row("part of a word", "`protect my_key_block", false);
    table.row("no directive", "protect key_block", false);
    table.row("after text", "x `protect key_block", false);
    table.row("in a comment", "-- `protect key_block", false);
    table.row("joined pragma", "`pragmaprotect key_block", false);
    table.row("longer word", "`protected key_block", false);
    table.row("nothing between", "`protectkey_block", false);
    table.row("directive alone", "`protect", false);
    table.row("backtick alone", "`", false);
}

void EncodingTest::blockDirectives() {
    QFETCH(QByteArray, line);
    QTEST(Sealwork::isBlockDirective(line.toStdString()), "expected");
}

void EncodingTest::configurations_data() {
    const TestTable<QByteArray, QString> table("text", "expected");
    const auto refused = [](int line, const char* reason) {
        return QStringLiteral("Fatal: Bad seal configuration [line=%1] [reason=%2]")
            .arg(line)
            .arg(QLatin1String(reason));
    };
    table.row("empty", {}, "aes256-cbc");
    table.row("comment", "# data_method = aes128-cbc\n\n", "aes256-cbc");
    table.row("128 bits", "data_method = aes128-cbc\n", "aes128-cbc");
    table.row("256 bits, CRLF, no end", "\r\n  data_method=aes256-cbc", "aes256-cbc");
    table.row("unknown method", "\ndata_method = des\n",
              refused(2, "data_method is neither aes128-cbc nor aes256-cbc"));
    table.row("upper case", "data_method = AES256-CBC", refused(1, "data_method is neither aes128-cbc nor aes256-cbc"));
    table.row("unknown key", "data_methods = aes128-cbc\n", refused(1, "unknown key \"data_methods\""));
    table.row("no value", "data_method\n", refused(1, "not \"key = value\""));
    table.row("twice", "data_method = aes128-cbc\ndata_method = aes128-cbc\n",
              refused(2, "data_method is given twice"));
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

QTEST_GUILESS_MAIN(EncodingTest)
#include "EncodingTest.moc"
