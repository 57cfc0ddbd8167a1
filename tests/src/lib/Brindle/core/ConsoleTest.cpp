#include "ForeignLocale.h"

#include <support/Captured.h>
#include <support/ReadFile.h>

#include <Brindle/core/Build.h>
#include <Brindle/core/Console.h>

#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <iostream>
#include <memory>

using namespace Brindle;

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
    void init() {
        _output.take();
        _errors.take();
    }
    void lines();
    void longTexts();
    void exceptions();
    void logFile();
    void timer();
    void observers();
    void observersThatChangeWhileTheyAreTold();

private:
    Captured _output{std::cout};
    Captured _errors{std::cerr};
};

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
    QCOMPARE(_output.take(), "Writing a%b...\nx and %\nWriting %\n  one\n\n  two\n\n  a?[31mb?c?\td?\n"
                             "    100% done\n  d\n");
    QCOMPARE(_errors.take(), "    bad\n");
}

void ConsoleTest::longTexts() {
    const std::string longest(1000, 'x');
    const QString umlauts(997, QChar(0xe4));
    const QString rocket = QString::fromUtf8("\xf0\x9f\x9a\x80");
    const auto shown = [this](const std::string& text) {
        Console().print(text);
        return _output.take();
    };
    QCOMPARE(shown(longest + "\n" + longest + "y\nz"), QString(1000, 'x') + "\n" + QString(997, 'x') + "...\nz\n");
    QCOMPARE(shown((umlauts + rocket.repeated(3)).toStdString()), umlauts + rocket.repeated(3) + "\n");
    QCOMPARE(shown((umlauts + rocket.repeated(4)).toStdString()), umlauts + "...\n");
}

void ConsoleTest::exceptions() {
    const auto shown = [this](const std::string& message, std::initializer_list<Exception::Field> fields,
                              const Location& place = {}) {
        Console tested;
        tested.error(located(Fatal(message), place, fields));
        tested.error("two\nlines");
        tested.remark("remark");
        return _errors.take().remove("two\nlines\n") + QString::number(tested.getErrorCount());
    };
    QCOMPARE(shown("Bad", {}), "Bad\n2");
    QCOMPARE(shown("Bad", {{"value", "7"}, {"bitCount", ""}}), "Bad (value: 7, bitCount: )\n2");
    QCOMPARE(shown("Bad\nvalue", {{"value", "7\n8"}}), "Bad\nvalue (value: 7 8)\n2");
    QCOMPARE(shown(std::string(1001, 'm'), {{"value", std::string(2000, 'v')}}),
             QString(997, 'm') + "... (value: " + QString(997, 'v') + "...)\n2");
    QCOMPARE(shown("Bad", {}, {"src/bin/velmora/IPLeaf", "parse", 12}),
             isDebug() ? "Bad [src/bin/velmora/IPLeaf, parse, line 12]\n2" : "Bad\n2");
}

void ConsoleTest::logFile() {
    const QTemporaryDir folder;
    const QString first = folder.filePath("first.log");
    const QString second = folder.filePath("second.log");
    Console tested;
    tested.setFullLogFile(first.toStdString());
    tested.print("from an earlier run");
    tested.setFullLogFile("");
    tested.print("not in a file");
    tested.setFullLogFile(first.toStdString());
    tested.indent();
    tested.print("text");
    tested.error("error");
    QCOMPARE(readFile(first), "  text\n  error\n"); // at once, not at the end
    tested.setFullLogFile(second.toStdString());
    tested.remark("remark");
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
    const auto shown = _output.take();
    QVERIFY2(QRegularExpression("^Done in [0-9]+\\.[0-9]{3} s\n$").match(shown).hasMatch(), qPrintable(shown));
}

QTEST_GUILESS_MAIN(ConsoleTest)
#include "ConsoleTest.moc"
