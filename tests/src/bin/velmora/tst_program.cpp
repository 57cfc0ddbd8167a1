#include <support/Program.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <Brindle/core/Build.h>

#include <QDir>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <memory>
#include <sys/stat.h>

/// The program as a process: what it prints, its exit status, and what it leaves in the settings.
class ProgramTest : public QObject {
    Q_OBJECT

private:
    Program::Outcome run(const char* probe, const QStringList& arguments = {}) const {
        return Program(*_prefix).run(probe, arguments);
    }
    QString settingsPath() const { return Program(*_prefix).getSettingsPath(); }

    std::unique_ptr<TestPrefix> _prefix;

private Q_SLOTS:
    void init() { _prefix = std::make_unique<TestPrefix>(); }
    void cleanup() { _prefix.reset(); }

    void normalClose();
    void answersWithoutAWindow_data();
    void answersWithoutAWindow();
    void aboutPageCanBeSuppressed();
    void settingsInAPipe();
    void startsWithSpoiltSettings_data();
    void startsWithSpoiltSettings();
    void exceptionsFromSlots_data();
    void exceptionsFromSlots();
    void brokenInstallation_data();
    void brokenInstallation();
};

void ProgramTest::normalClose() {
    _prefix->addBridge("");
    const Program::Outcome outcome = run("close", {"-no-about"});
    QCOMPARE(outcome.errors, QStringList());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output.size(), 2);
    QCOMPARE(outcome.output.at(0), QStringLiteral("Running velmora"));
    QVERIFY(QRegularExpression("^  Started on \\d\\d/\\d\\d/\\d{4} - \\d\\d:\\d\\d$")
                .match(outcome.output.at(1))
                .hasMatch());
    const QSettings settings(settingsPath(), QSettings::IniFormat);
    QVERIFY(settings.contains("geometry"));
    QVERIFY(settings.contains("APBToSPWLeaf/Entity"));
}

void ProgramTest::answersWithoutAWindow_data() {
    const TestTable<QStringList, int, QString> table("arguments", "status", "firstLine");
    table.row("version", {"--bogus", "--version"}, 0, "velmora 1.0.0");
    table.row("help", {"--bogus", "-h"}, 0, "Usage: velmora [-no-about] [Qt option]...");
    table.row("unknown option", {"-no-about", "--bogus=1"}, 2, "velmora: Unknown option --bogus; see velmora --help");
    table.row("operand", {"filter.velmora"}, 2, "velmora: Unexpected 'filter.velmora'; see velmora --help");
}

void ProgramTest::answersWithoutAWindow() {
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    const Program::Outcome outcome = run("close", arguments);
    QCOMPARE(outcome.status, status);
    QTEST((status == 0 ? outcome.output : outcome.errors).value(0), "firstLine");
    QVERIFY(!outcome.output.contains("Running velmora") && !QFile::exists(settingsPath()));
}

void ProgramTest::aboutPageCanBeSuppressed() {
    QCOMPARE(run("title").output.mid(2), QStringList({"<b>About</b>", "About"}));
    const Program::Outcome outcome = run("title", {"-help", "-no-about", "-check"}); // the others do nothing
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output.mid(2), QStringList({"<b>IPs</b>", "Settings"})); // no button was pressed yet
}

void ProgramTest::startsWithSpoiltSettings_data() {
    const TestTable<QString, QByteArray, int> table("path", "content",
                                                    "errorCount"); // errorCount: for what cannot be stored in the end
    const QString file = "config/Orvane/Velmora.conf";
    table.row("rubbish", file, QByteArray("[General\n\xff\xfe=\\x\0@Variant(\n[[]]\ntheme", 34), 0);
    table.row("values of other types", file,
              "[General]\ntheme=@Invalid()\nsize=a, b\nanimations=a, b\nisMaximized=@Point(1 2)\nconsoleSplitter=a, b\n"
              "geometry=@ByteArray(\\x1\\xd9\\xd0\\xcb)\nwindowState=7\n",
              0);
    table.row("a folder in the file's place", file + "/x", {}, 1);
}

void ProgramTest::startsWithSpoiltSettings() {
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QFETCH(int, errorCount);
    _prefix->addBridge("");
    _prefix->write(path, content);
    const Program::Outcome outcome = run("title");
    QCOMPARE(outcome.errors.filter("Unable to store the settings in ").size(), errorCount);
    QCOMPARE(outcome.errors.size(), errorCount);
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.output.contains("<b>About</b>"));
}

/// Which would be waited for.
void ProgramTest::settingsInAPipe() {
    QVERIFY(QDir().mkpath(QFileInfo(settingsPath()).path()));
    QCOMPARE(mkfifo(QFile::encodeName(settingsPath()).constData(), 0600), 0);
    const Program::Outcome outcome = run("close");
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.size(), 1);
    QCOMPARE(outcome.errors.first().section(" [", 0, 0),
             "Settings are kept in what is no regular file (filename: " + settingsPath() + ")");
}

void ProgramTest::exceptionsFromSlots_data() {
    const TestTable<QString, QString, QString> table("probe", "error", "location");
    const QString inMain = "[src/bin/velmora/main, main, line 80]";
    table.row("standard", "standard", "  Processing aborted [standard text]", inMain);
    table.row("in-house", "in-house", "  in-house text", "[tests/probe/ProbePlugin, act, line ");
    table.row("unrelated", "unrelated", "  Processing aborted [something strange...]", inMain);
}

void ProgramTest::exceptionsFromSlots() {
    QFETCH(QString, probe);
    QFETCH(QString, error);
    QFETCH(QString, location);
    _prefix->addBridge("");
    const Program::Outcome outcome = run(probe.toLatin1(), {"-no-about"});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.size(), 1);
    QVERIFY2(outcome.errors.first().startsWith(error), qPrintable(outcome.errors.first()));
    QCOMPARE(outcome.errors.first().contains(location), Brindle::isDebug());
    QVERIFY(QRegularExpression("^  Running velmora failed in \\d+\\.\\d+ s$").match(outcome.output.last()).hasMatch());
    const QSettings settings(settingsPath(), QSettings::IniFormat);
    QVERIFY(settings.contains("APBToSPWLeaf/Entity") && !settings.contains("geometry"));
}

void ProgramTest::brokenInstallation_data() {
    const TestTable<bool, QByteArray, QString> table("withPrefix", "description", "error");
    table.row("no prefix", false, {}, "  Processing aborted [");
    table.row("binary description", true, QByteArray("\0\1\2\xff", 4), "  Invalid line: '");
}

void ProgramTest::brokenInstallation() {
    QFETCH(bool, withPrefix);
    QFETCH(QByteArray, description);
    QFETCH(QString, error);
    _prefix->addBridge("");
    _prefix->write("config/Orvane/Velmora.conf", "[APBToSPWLeaf]\nEntity=before\n");
    const QString filename = _prefix->addIP("Zebra/broken", description);
    Program program(*_prefix);
    if (!withPrefix)
        program.unset("ORVANE_PREFIX");
    const Program::Outcome outcome = program.run("close");
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.size(), 1);
    QVERIFY2(outcome.errors.first().startsWith(error), qPrintable(outcome.errors.first()));
    QVERIFY(!withPrefix || outcome.errors.first().contains("filename: " + filename));
    QVERIFY(outcome.output.last().startsWith("  Running velmora failed in "));
    QCOMPARE(readFile(settingsPath()), QByteArray("[APBToSPWLeaf]\nEntity=before\n"));
}

QTEST_GUILESS_MAIN(ProgramTest)
#include "tst_program.moc"
