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

std::string referenceLines(std::string_view bytes) {
    return QString(toBytes(bytes).toBase64()).replace(QRegularExpression("(.{1,76})"), "\\1\n").toStdString();
}

} // namespace

/// The text forms below the cryptography: base64 lines, block directives, configuration.
class EncodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void base64InLines();
    void base64IsCanonical();
    void base64WithWhiteSpace();
    void directiveExpressions();
    void blockDirectives();
    void configurations();
};

void EncodingTest::base64InLines() {
    for (const std::size_t size : {0UL, 1UL, 56UL, 57UL, 58UL, 239UL}) {
        const auto bytes = mixedBytes(size);
        const auto expected = referenceLines(bytes);
        QCOMPARE(Sealwork::base64LinesSize(size), expected.size());
        for (const std::size_t pieceSize : {1UL, 100UL}) {
            std::string lines;
            Sealwork::Base64LineEncoder encoder(lines);
            for (std::size_t begin = 0; begin < size; begin += pieceSize)
                encoder.append(asBytes(std::string_view(bytes).substr(begin, pieceSize)));
            encoder.finish();
            QCOMPARE(lines, expected);
        }
    }
}

/// No other text is taken for the bytes.
void EncodingTest::base64IsCanonical() {
    for (const std::size_t size : {1UL, 2UL, 59UL}) {
        const std::string good = referenceLines(mixedBytes(size));
        std::vector<std::uint8_t> bytes(size);
        QVERIFY(Sealwork::decodeBase64Lines(good, bytes));
        QVERIFY(std::ranges::equal(bytes, asBytes(mixedBytes(size))));
        for (std::size_t position = 0; position < good.size(); ++position)
            for (int value = 0; value < 256; ++value) {
                std::string lines = good;
                lines[position] = static_cast<char>(value);
                if (Sealwork::decodeBase64Lines(lines, bytes))
                    QCOMPARE(referenceLines({reinterpret_cast<const char*>(bytes.data()), size}), lines);
            }
    }
}

void EncodingTest::base64WithWhiteSpace() {
    const auto decoded = [](std::string_view text) {
        const auto bytes = Sealwork::decodeBase64Text(text);
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string("refused");
    };
    QCOMPARE(decoded(" \r\n"), std::string());
    QCOMPARE(decoded("\tY W\r\nI\n=\n\n"), std::string("ab"));
    QCOMPARE(decoded(std::string(160, 'A')), std::string(120, '\0'));
    for (const char* wrong : {"YQ==YQ==", "YWJ", "YWJ=", "YW`j"}) // padding inside, cut, stray bits, another character
        QCOMPARE(decoded(wrong), std::string("refused"));
}

void EncodingTest::directiveExpressions() {
    const auto parsed = [](const char* text) {
        const auto expressions = Sealwork::parseExpressions(text);
        std::string result = expressions ? "" : "unreadable";
        for (const auto& [name, value] : expressions.value_or(std::vector<Sealwork::DirectiveExpression>()))
            result.append(name).append(":").append(value).append("; ");
        return result;
    };
    QCOMPARE(parsed(" KEY_block\r"), std::string("key_block:; "));
    QCOMPARE(parsed("a=\"x, y=(z)\",b = 1 , c=( d=\"e\", f=2 )"), std::string("a:x, y=(z); b:1; c: d=\"e\", f=2 ; "));
    for (const char* wrong : {" ", "a=", "a=\"b", "a=\"b\"c"})
        QCOMPARE(parsed(wrong), std::string("unreadable"));
}

void EncodingTest::blockDirectives() {
    for (const char* line :
         {"`protect key_block", " \t`pragma \t protect  data_block \r", "`protect encoding=(bytes=3), key_block"})
        QVERIFY2(Sealwork::isBlockDirective(line), line);
    for (const char* line : {"`protect begin_protected", "protect key_block", "-- `protect key_block",
                             "`protected key_block", "`protect my_key_block", "`protect data_block follows"})
        QVERIFY2(!Sealwork::isBlockDirective(line), line);
}

void EncodingTest::configurations() {
    const auto methodOf = [](const char* text) {
        QString method;
        const auto failure = failureOf(
            [&] {
                const auto configuration = Sealwork::SealConfiguration::parse(text, "seal.conf");
                method = QString::fromLatin1(toBytes(Sealwork::getName(configuration.dataMethod)));
            },
            {"line", "reason"});
        return failure.isEmpty() ? method : failure;
    };
    const QString refused = "Fatal: Bad seal configuration [line=%1] [reason=%2]";
    QCOMPARE(methodOf("# data_method = aes128-cbc\n\n"), "aes256-cbc");
    QCOMPARE(methodOf("\r\n  data_method=aes128-cbc"), "aes128-cbc");
    QCOMPARE(methodOf("\ndata_method = des\n"), refused.arg(2).arg("data_method is neither aes128-cbc nor aes256-cbc"));
    QCOMPARE(methodOf("data_methods = aes128-cbc\n"), refused.arg(1).arg("unknown key \"data_methods\""));
    QCOMPARE(methodOf("data_method\n"), refused.arg(1).arg("not \"key = value\""));
    QCOMPARE(methodOf("data_method = aes128-cbc\ndata_method = aes128-cbc\n"),
             refused.arg(2).arg("data_method is given twice"));
}

QTEST_GUILESS_MAIN(EncodingTest)
#include "EncodingTest.moc"
