#include "ForeignLocale.h"

#include <support/ReadFile.h>
#include <support/TestTable.h>

#include <Brindle/core/Build.h>
#include <Brindle/core/Console.h>

#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <iostream>
#include <memory>
#include <sstream>

using namespace Brindle;

Q_DECLARE_METATYPE(std::shared_ptr<Brindle::Exception>)

namespace {

/// Keeps what it is told, each line after its kind's initial.
class Listener : public ConsoleObserver {
public:
    void onConsoleLine(ConsoleLineKind kind, const std::string& line) override {
        heard += QString("TRE"[static_cast<int>(kind)]) + ":" + QString::fromStdString(line);
        if (then)
            then();
    }

    QStringList heard;
    std::function<void()> then; ///< What is done on each line.
};

} // namespace

class ConsoleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void lines();
    void longTexts_data();
    void longTexts();
    void exceptions_data();
    void exceptions();
    void logFile();
    void timer();
    void observers();
    void observersThatChangeWhileTheyAreTold();

private:
    std::ostringstream _output; // what reaches standard output
    std::ostringstream _errors; // what reaches standard error
    std::streambuf* _standardOutput = nullptr;
    std::streambuf* _standardError = nullptr;
};

void ConsoleTest::init() {
    _output.str({});
    _errors.str({});
    _standardOutput = std::cout.rdbuf(_output.rdbuf());
    _standardError = std::cerr.rdbuf(_errors.rdbuf());
}

void ConsoleTest::cleanup() {
    std::cout.rdbuf(_standardOutput);
    std::cerr.rdbuf(_standardError);
}

void ConsoleTest::lines() {
    Console to;
    to.unindent(); // there is no level below the first
    to.print("Writing %...", "a%b");
    to.print("% and %", "x");
    to.print("Writing %", "");
    to.indent();
    to.print("one\n\ntwo\n");
    to.print(std::string("a\x1b[31mb\0c\r\td\x7f", 13));
    to.indent();
    to.remark("100% done");
    to.error("bad");
    to.unindent();
    to.print("d");
    QCOMPARE(_output.str(), std::string("Writing a%b...\nx and %\nWriting %\n  one\n\n  two\n\n  a?[31mb?c?\td?\n"
                                        "    100% done\n  d\n"));
    QCOMPARE(_errors.str(), std::string("    bad\n"));
}

void ConsoleTest::longTexts_data() {
    const TestTable<QString, QString> table("text", "shown");
    const QString longest(1000, 'x');
    const QString kept(997, 'x');
    const QString umlauts(997, QChar(0xe4));
    const QString rocket = QString::fromUtf8("\xf0\x9f\x9a\x80");
    table.row("1000 of several bytes", umlauts + rocket.repeated(3), umlauts + rocket.repeated(3));
    table.row("1001 of several bytes", umlauts + rocket.repeated(4), umlauts + "...");
    table.row("each line by itself", longest + "\n" + longest + "y\nz", longest + "\n" + kept + "...\nz");
}

void ConsoleTest::longTexts() {
    QFETCH(QString, text);
    QFETCH(QString, shown);
    Console tested;
    tested.print(text.toStdString());
    QCOMPARE(QString::fromStdString(_output.str()), shown + "\n");
}

void ConsoleTest::exceptions_data() {
    using Shared = std::shared_ptr<Exception>;
    const TestTable<Shared, QString> table("exception", "shown");
    const auto with = [](std::initializer_list<Exception::Field> fields, const std::string& message = "Bad value") {
        return Shared(std::make_shared<Fatal>(located(Fatal(message), Location{}, fields)));
    };
    const Location place{"src/bin/velmora/IPLeaf", "parse", 12};
    table.row("message", with({}), "Bad value\n");
    table.row("fields in order", with({{"value", "7"}, {"bitCount", ""}}), "Bad value (value: 7, bitCount: )\n");
    table.row("several lines", with({{"value", "7"}}, "Bad\nvalue"), "Bad\nvalue (value: 7)\n");
    table.row("long parts", with({{"value", std::string(2000, 'v')}}, std::string(1001, 'm')),
              QString(997, 'm') + "... (value: " + QString(997, 'v') + "...)\n");
    table.row("place", Shared(std::make_shared<Critical>(located(Critical("Bad"), place))),
              (isDebug() ? "Bad [src/bin/velmora/IPLeaf, parse, line 12]\n" : "Bad\n"));
}

void ConsoleTest::exceptions() {
    QFETCH(std::shared_ptr<Brindle::Exception>, exception);
    Console tested;
    tested.error(*exception);
    QTEST(QString::fromStdString(_errors.str()), "shown");
    QCOMPARE(_output.str(), std::string());
    tested.error("two\nlines");
    tested.remark("remark");
    QCOMPARE(tested.getErrorCount(), 2UL);
}

void ConsoleTest::logFile() {
    const QTemporaryDir folder;
    const QString first = folder.filePath("first.log");
    const QString second = folder.filePath("second.log");
    QFile old(first);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("from an earlier run\n") > 0);
    old.close();

    Console tested;
    tested.print("not in a file");
    tested.setFullLogFile(first.toStdString());
    tested.indent();
    tested.print("text");
    tested.error("error");
    QCOMPARE(readFile(first), "  text\n  error\n"); // at once, not at the end
    tested.setFullLogFile(second.toStdString());
    tested.remark("remark");
    tested.setFullLogFile("");
    tested.print("not in a file");
    QCOMPARE(readFile(first), "  text\n  error\n");
    QCOMPARE(readFile(second), "  remark\n");

    const std::string unusable = folder.filePath("none/x.log").toStdString();
    try {
        tested.setFullLogFile(unusable);
        QFAIL("a file in a missing folder was opened");
    } catch (const Critical& failure) {
        QCOMPARE(failure.getMessage(), std::string("Unable to open log file"));
        QCOMPARE(failure.getField("filename"), unusable);
    }
}

void ConsoleTest::observers() {
    Listener lasting;
    {
        Console tested;
        tested.attach(lasting);
        tested.attach(lasting); // once is enough
        {
            Listener passing;
            tested.attach(passing);
            tested.indent();
            tested.print("%", "a");
            tested.remark("b");
            tested.error("c\nd");
            QCOMPARE(passing.heard, (QStringList{"T:  a", "R:  b", "E:  c", "E:  d"}));
        }
        tested.print("e");
        QCOMPARE(lasting.heard, (QStringList{"T:  a", "R:  b", "E:  c", "E:  d", "T:  e"}));
    }

    Console other;
    Console another;
    lasting.heard.clear();
    other.attach(lasting);
    another.attach(lasting); // leaves the first one
    other.detach(lasting);   // not attached there any more
    another.attach(lasting); // still attached here
    other.print("f");
    another.print("g");
    another.detach(lasting);
    another.print("h");
    QCOMPARE(lasting.heard, QStringList{"T:g"});
}

void ConsoleTest::observersThatChangeWhileTheyAreTold() {
    Console tested;
    Listener first;
    auto second = std::make_unique<Listener>();
    Listener third;
    for (Listener* listener : {&first, second.get(), &third})
        tested.attach(*listener);
    first.then = [&] {
        second.reset();
        tested.detach(first);
    };
    tested.print("a");
    tested.print("b");
    QCOMPARE(first.heard, QStringList{"T:a"});
    QCOMPARE(third.heard, (QStringList{"T:a", "T:b"}));
}

void ConsoleTest::timer() {
    const ForeignLocale foreign;
    Console tested;
    tested.openTimer();
    tested.closeTimer("Done in %");
    const auto shown = QString::fromStdString(_output.str());
    QVERIFY2(QRegularExpression("^Done in [0-9]+\\.[0-9]{3} s\n$").match(shown).hasMatch(), qPrintable(shown));
}

QTEST_GUILESS_MAIN(ConsoleTest)
#include "ConsoleTest.moc"
