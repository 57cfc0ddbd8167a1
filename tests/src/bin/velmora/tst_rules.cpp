#include <velmora/rules/ArgumentDictionary.h>
#include <velmora/rules/Coefficients.h>
#include <velmora/rules/Common.h>
#include <velmora/rules/IPDescription.h>
#include <velmora/rules/ProtectedRegions.h>
#include <velmora/rules/VerilogModules.h>
#include <velmora/rules/VhdlEntities.h>
#include <velmora/rules/WhiteSpace.h>

#include <support/TestTable.h>

#include <Brindle/core/Exception.h>

#include <QDir>
#include <QTest>

#include <climits>

using Velmora::IPDescription;

namespace {

const std::string descriptionFilename = "/prefix/share/velmora/Orvane/one/config";

IPDescription parse(const QByteArray& content) {
    return Velmora::parseIPDescription(content.toStdString(), descriptionFilename);
}

/// The exception that the work throws, as "Kind: message"; empty when it throws none.
template <class Work>
QString thrownBy(Work work) {
    try {
        work();
    } catch (const Brindle::InvalidRequest& exception) {
        return QStringLiteral("InvalidRequest: ") + exception.what();
    } catch (const Brindle::Fatal& exception) {
        return QStringLiteral("Fatal: ") + exception.what();
    }
    return QString();
}

} // namespace

/// The rules of the program that need neither a window nor an event loop.
class RulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whiteSpaceIsCollapsedAsQtDoesIt();
    void descriptionErrors_data();
    void descriptionErrors();
    void descriptionFields();
    void lastKeywordWinsAndVariantsAccumulate();
    void argumentStatement();
    void unsupportedCharacters_data();
    void unsupportedCharacters();
    void hexadecimalLiterals_data();
    void hexadecimalLiterals();
    void hexadecimalValues_data();
    void hexadecimalValues();
    void coefficientLists_data();
    void coefficientLists();
    void coefficientAggregates_data();
    void coefficientAggregates();
    void languages();
    void headsOfUnits_data();
    void headsOfUnits();
    void protectedRegions_data();
    void protectedRegions();
};

void RulesTest::whiteSpaceIsCollapsedAsQtDoesIt() {
    for (char32_t code = 0; code < 0x10000; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF)
            continue;
        const QString character = QString::fromUcs4(&code, 1);
        const QString text = character + "a" + character + character + "b" + character;
        const QString collapsed = QString::fromStdString(Velmora::simplified(text.toStdString()));
        if (collapsed != text.simplified())
            QFAIL(qPrintable(QStringLiteral("differs from Qt for U+%1").arg(code, 4, 16)));
    }
}

void RulesTest::descriptionErrors_data() {
    const TestTable<QByteArray, QString> table("content", "message");

    const QByteArray whole = "name A\ncategory B\ncompany C\nvariants D\n";

    table.row("accepted: uid of 25 long characters", whole + "uid " + QByteArray("\xc3\xa9").repeated(25) + "\n", "");
    table.row("uid of 26 long characters", whole + "uid " + QByteArray("\xc3\xa9").repeated(26),
              "UID should contains less than 25 characters");
    table.row("uid of a character and 25 stray bytes", whole + "uid \xc3\xa9" + QByteArray("\xa9").repeated(25),
              "UID should contains less than 25 characters");

    table.row("empty file", "", "Name not specified");
    table.row("empty line at the end", whole + "\n", "Invalid line: ''");
    table.row("byte order mark", "\xef\xbb\xbf" + whole,
              "Description file begins with a byte order mark, save it without one");
    table.row("NUL in a value", whole + QByteArray("name A\0B", 8), "Line holds a NUL byte");
    table.row("unknown keyword", whole + "Name A\n", "Unknow keyword Name");
    table.row("two uids", "uid  A\tB", "Invalid wordCount: 'uid A B'");
    table.row("word count before the uid's length", "uid " + QByteArray(26, 'u') + " B",
              "Invalid wordCount: 'uid uuuuuuuuuuuuuuuuuuuuuuuuuu B'");

    table.row("name first", "category B\nvariants D\n", "Name not specified");
    table.row("name that consists of the keyword", "name name\ncategory B\ncompany C\nvariants D\n",
              "Name not specified");
    table.row("then company", "name A\nscript s.py\n", "Company not specified");
    table.row("then category", "name A\ncompany C\n", "Category not specified");
    table.row("then variants", "name A\ncompany C\ncategory B\nscript s.py\n", "No variant specified");
    table.row("then the script's uid", whole + "script s.py\n", "UID not specified");
    table.row("binary",
              QByteArray("\x7f"
                         "ELF\x00\x01\x02 \xff\xfe",
                         10),
              "Unknow keyword \x7f"
              "ELF");
}

void RulesTest::descriptionErrors() {
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    try {
        parse(content);
        QCOMPARE(message, QString());
    } catch (const Brindle::Critical& exception) {
        QCOMPARE(exception.what(), message);
        QCOMPARE(exception.getField("filename"), descriptionFilename);
        QCOMPARE(exception.getField("line").empty(), message.contains("specified"));
    }
}

void RulesTest::descriptionFields() {
    const IPDescription ip = parse("  name   APB\t slave to  serial master \n"
                                   "category Interface/Serial  links\n"
                                   "uid APBSLAVE01\ncompany Orvane\nvariants FAMILYA FAMILYB\n"
                                   "script ../common/gen.py\nhtml /elsewhere/../page.html\n");
    QCOMPARE(ip.name, std::string("APB slave to serial master"));
    QCOMPARE(ip.category, std::string("Interface/Serial links"));
    QCOMPARE(ip.uid, std::string("APBSLAVE01"));
    QCOMPARE(ip.company, std::string("Orvane"));
    QCOMPARE(ip.variants, (std::list<std::string>{"FAMILYA", "FAMILYB"}));
    QCOMPARE(ip.scriptFilename, std::string("/prefix/share/velmora/Orvane/one/../common/gen.py"));
    QCOMPARE(ip.htmlFilename, std::string("/elsewhere/../page.html"));
    const QByteArray content = "name A\ncategory B\ncompany C\nvariants D\nuid E\nscript s.py\n";
    QCOMPARE(Velmora::parseIPDescription(content.toStdString(), "x/config").scriptFilename,
             QDir::currentPath().toStdString() + "/x/s.py");
}

void RulesTest::lastKeywordWinsAndVariantsAccumulate() {
    const IPDescription ip = parse("name Filename converter\nname Renamed names of a Name\n"
                                   "category category/subcategory\ncompany C\ncompany D\n"
                                   "variants A B\nvariants B C\n");
    QCOMPARE(ip.name, std::string("Red s of a Name"));
    QCOMPARE(ip.category, std::string("/sub"));
    QCOMPARE(ip.company, std::string("D"));
    QCOMPARE(ip.variants, (std::list<std::string>{"A", "B", "B", "C"}));
    QCOMPARE(parse("name Filename converter\ncategory B\ncompany C\nvariants D").name, std::string("File converter"));
}

void RulesTest::argumentStatement() {
    Velmora::ArgumentDictionary arguments;
    arguments.add("%%ENTITY_NAME%%", "");
    QCOMPARE(arguments.getStatement(), std::string("argDict = {  '%%ENTITY_NAME%%': ''}"));
    arguments.add("%%A-1%%", "(x\"02d\", x\"fe0\")").add("%%B%%", "\xC3\xA9 %");
    QCOMPARE(arguments.getStatement(), std::string("argDict = {  '%%ENTITY_NAME%%': '', '%%A-1%%': "
                                                   "'(x\"02d\", x\"fe0\")', '%%B%%': '\xC3\xA9 %'}"));
}

void RulesTest::unsupportedCharacters_data() {
    const TestTable<QByteArray> table("value");
    table.row("single quote that closes the string", "x' + __import__('os').getcwd() + '");
    table.row("backslash", "x\\");
    table.row("line feed", "x\ny");
    table.row("carriage return", "x\ry");
    table.row("NUL", QByteArray("x\0y", 3));
}

void RulesTest::unsupportedCharacters() {
    QFETCH(QByteArray, value);
    Velmora::ArgumentDictionary arguments;
    arguments.add("%%FIRST%%", "good");
    try {
        arguments.add("%%SECOND%%", value.toStdString());
        QFAIL("nothing thrown");
    } catch (const Brindle::InvalidRequest& exception) {
        QCOMPARE(exception.what(), "Unsupported character in value");
        QCOMPARE(exception.getField("key"), std::string("%%SECOND%%"));
        QCOMPARE(exception.getField("value"), value.toStdString());
    }
    QCOMPARE(arguments.getStatement(), std::string("argDict = {  '%%FIRST%%': 'good'}"));
}

void RulesTest::hexadecimalLiterals_data() {
    const TestTable<QString, bool> table("text", "accepted");
    table.row("one digit", "x\"0\"", true);
    table.row("upper case", "X\"09AF\"", true);
    table.row("empty", "", false);
    table.row("no digit", "x\"\"", false);
    table.row("letter g", "x\"0g\"", false);
    table.row("neighbours of the digits", "x\"/\"", false);
    table.row("without closing quote", "x\"0af", false);
}

void RulesTest::hexadecimalLiterals() {
    QFETCH(QString, text);
    QTEST(Velmora::isHexadecimal(text.toStdString()), "accepted");
}

void RulesTest::hexadecimalValues_data() {
    TestTable<int, unsigned long, QString>("value", "bitCount", "result");
    const auto row = [](int value, unsigned long bitCount, const char* result) {
        QTest::addRow("%d in %lu bits", value, bitCount) << value << bitCount << QString(result);
    };
    const char* tooHigh = "Fatal: Value too high for specified width";
    row(-123, 12, "x\"f85\"");
    row(-1, 4, "x\"f\"");
    row(245, 4, "x\"5\"");
    row(-9, 4, "x\"7\"");
    row(INT_MAX, 32, "x\"7fffffff\"");
    row(INT_MIN, 32, "x\"80000000\"");
    row(INT_MIN, 64, "x\"ffffffff80000000\"");
    row(300, 8, tooHigh);
    row(0, 0, tooHigh);
    row(-1, 0, "x\"\"");
    row(INT_MIN, 28, tooHigh);
    row(1, 6, "InvalidRequest: bitCount should be a multiple of 4");
}

void RulesTest::hexadecimalValues() {
    QFETCH(int, value);
    QFETCH(unsigned long, bitCount);
    std::string literal;
    const QString thrown = thrownBy([&] { literal = Velmora::getHexadecimal(value, bitCount); });
    QTEST(thrown.isEmpty() ? QString::fromStdString(literal) : thrown, "result");
}

void RulesTest::coefficientLists_data() {
    const TestTable<QString, QStringList> table("text", "list");
    table.row("all separators", "1;2,3\n\n4", {"1", "2", "3", "4"});
    table.row("white space is collapsed", " 1 \t;\u00a0-2\u00a0,x \"0f\"", {"1", "-2", "x \"0f\""});
    table.row("nothing", "", {});
    table.row("blanks and separators only", " ;, \n\t;\u2003,", {});
    table.row("what a piece says does not matter", "abc, 1 2", {"abc", "1 2"});
}

void RulesTest::coefficientLists() {
    QFETCH(QString, text);
    QStringList list;
    for (const std::string& piece : Velmora::parseCoefficients(text.toStdString()))
        list += QString::fromStdString(piece);
    QTEST(list, "list");
}

void RulesTest::coefficientAggregates_data() {
    const TestTable<QString, int, QString> table("text", "width", "aggregate");
    table.row("decimal", "45, 42", 10, R"((x"02d", x"02a"))");
    table.row("signs", "-1, +7, -123", 12, R"((x"fff", x"007", x"f85"))");
    table.row("literals stay as typed", R"(X"0F1f", 1, x"1")", 8, R"((X"0F1f", x"01", x"1"))");
    table.row("width 9 takes three digits", "1", 9, R"((x"001"))");
    table.row("width 24", "-8388608, 8388607", 24, R"((x"800000", x"7fffff"))");
    table.row("too high", "256", 8, "Value too high for specified width");
    for (const char* bad : {"abc", "1.5", "x\"0g\"", "+", "+-1", "99999999999"})
        table.row(bad, bad, 8, QStringLiteral("Invalid coefficient: ") + bad);
}

void RulesTest::coefficientAggregates() {
    QFETCH(QString, text);
    QFETCH(int, width);
    const unsigned long digits = Velmora::normalizedCoefficientWidth(static_cast<unsigned long>(width));
    QString result;
    try {
        const auto list = Velmora::parseCoefficients(text.toStdString());
        result = QString::fromStdString(Velmora::renderCoefficients(list, digits));
    } catch (const Brindle::Fatal& exception) {
        result = exception.what();
        if (!exception.getField("coefficient").empty())
            result += QStringLiteral(": ") + QString::fromStdString(exception.getField("coefficient"));
    }
    QTEST(result, "aggregate");
}

void RulesTest::languages() {
    QCOMPARE(Velmora::getLanguage("rtl/x.v"), "vlog");
    QCOMPARE(Velmora::getLanguage("x.vh"), "vlog");
    QCOMPARE(Velmora::getLanguage("x.V"), "vhdl");
}

void RulesTest::headsOfUnits_data() {
    const TestTable<QByteArray, QStringList> table("text", "heads");
    table.row(
        "entity",
        "library ieee; architecture a of b is begin x <= c when '(', '\"' & character'('\"'); end;\n"
        "Library ieee; -- use it\nuse ieee.std_logic_1164.all;\n"
        "ENTITY Top Is Generic (N, M : positive := 2 ** (3);T:string:=\";)\");\n"
        "port (signal a,b : bit := '1'; -- ; c : in bit\n  c:OUT std_logic_vector ( N - 1\tdownto/*0*/0 ));\nend;",
        {"Top", "Library ieee;", "use ieee.std_logic_1164.all;", "N,in,positive,2 ** (3)", "M,in,positive,2 ** (3)",
         "T,in,string,\";)\"", "a,in,bit,'1'", "b,in,bit,'1'", "c,OUT,std_logic_vector ( N - 1 downto 0 ),"});
    table.row("two entities, one of them cut", "entity a is port (x : ; entity b is end; entity c is end c;", {});
    table.row(
        "module",
        "`define B\n`ifdef A\nmodule no;\n`elsif B\nmodule m #(parameter W = 8, localparam L = 1, parameter "
        "[1:0] P = 2'b01)\n"
        "(input wire [W-1:0] d /* , e */, f, output \\q; = 0);\n`else endmodule module no(input x);\n`endif endmodule "
        "module n(x); inout [1:0] x;",
        {"m", "W,,,8", "P,,[1:0],2'b01", "d,input,wire [W-1:0],", "f,input,wire [W-1:0],", "\\q;,output,,0", "n",
         "x,inout,[1:0],"});
}

void RulesTest::headsOfUnits() {
    QFETCH(QByteArray, text);
    QStringList heads;
    const auto add = [&heads](const std::vector<Velmora::HdlObject>& objects) {
        for (const auto& object : objects)
            heads += QString::fromStdString(object.name + "," + object.mode + "," + object.type + "," + object.value);
    };
    for (const auto& read : {Velmora::readVhdlEntities, Velmora::readVerilogModules}) {
        for (const Velmora::HdlUnit& unit : read(text.toStdString())) {
            heads += QString::fromStdString(unit.name);
            for (const std::string& clause : unit.context)
                heads += QString::fromStdString(clause);
            add(unit.generics);
            add(unit.ports);
        }
    }
    QTEST(heads, "heads");
}

void RulesTest::protectedRegions_data() {
    const TestTable<QString, QString> table("text", "result");
    const char* twice = "Fatal: Already encrypting";
    const char* without = "Fatal: No \"`protect begin\" found";
    table.row("no region", "a\nb", "a\nb\n");
    table.row("empty", "", "\n");
    table.row("several lines keep their ends", "`protect begin\nb\r\n\nc\n`protect end", "<vhdl:b\r\n\nc\n>");
    table.row("two regions", "`protect begin\na\n`protect end\n`protect begin\nb\n`protect end\n",
              "<vhdl:a\n><vhdl:b\n>\n");
    table.row("empty region", "`protect begin\n`protect end", "<vhdl:>");
    table.row("markers anywhere in a line", "x -- `protect begin here\nb\n//`protect endless\nc", "<vhdl:b\n>c\n");
    table.row("begin wins on one line", "`protect end `protect begin\nb", "");
    table.row("case counts", "`PROTECT BEGIN\nb", "`PROTECT BEGIN\nb\n");
    table.row("open region is dropped", "a\n`protect begin\nb\n", "a\n");
    table.row("two begins", "`protect begin\n`protect begin", twice);
    table.row("end first", "a\n`protect end", without);
}

void RulesTest::protectedRegions() {
    QFETCH(QString, text);
    const auto encipher = [](const std::string& language, const std::string& region) {
        return "<" + language + ":" + region + ">";
    };
    std::string output;
    const QString thrown = thrownBy(
        [&] { output = Velmora::protectRegions(text.toStdString(), Velmora::getLanguage("x.vhd"), encipher); });
    QTEST(thrown.isEmpty() ? QString::fromStdString(output) : thrown, "result");
}

QTEST_GUILESS_MAIN(RulesTest)
#include "tst_rules.moc"
