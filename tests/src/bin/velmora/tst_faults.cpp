#include <support/ConsoleRecorder.h>
#include <support/PathDialogs.h>
#include <support/Program.h>
#include <support/SmallDisk.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/window/MainWindow.h>

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>
#include <QWebFrame>
#include <QWebView>

#include <memory>

namespace {

constexpr const char* bridgeName = "APB slave to serial master";
constexpr const char* filterName = "Mac fir";
constexpr const char* needsRoot = "mounting a file system takes root";

/// Writes a file until its disk is full.
void fill(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("cannot open the filler");
    while (file.write(QByteArray(4096, 'x')) > 0) {
    }
}

} // namespace

/// What becomes of the user's work when something outside the program fails: a clear error, and nothing lost but the
/// chosen output file, which is emptied when it is opened.
class FaultsTest : public QObject {
    Q_OBJECT

private:
    /// Adds an IP with that script and opens its page.
    std::unique_ptr<Velmora::IPLeaf> openPage(const char* name, const QByteArray& script);
    QString addIP(const char* name, const QByteArray& script) const {
        return _prefix->addKnownIP(name, script, "html page.html\n");
    }
    static void press(const QWidget& page, const char* button = "Generate") {
        QTest::mousePress(page.findChild<QPushButton*>(button), Qt::LeftButton);
    }
    void fillFilter(const QWidget& page) const {
        page.findChild<QLineEdit*>("Entity")->setText("top");
        page.findChild<QTextEdit*>("Coefficients")->setPlainText("1;2;3");
    }
    QString out(const QString& name = {}) const { return _prefix->path("out/" + name); }
    /// The file that a program of the prefix generates with its only IP, a filter, under odd circumstances.
    QByteArray generateUnder(Program& program) const;

    std::unique_ptr<TestPrefix> _prefix;
    PathDialogs _dialogs;

private Q_SLOTS:
    void init();
    void cleanup() { _prefix.reset(); }

    void diskFillsUp();
    void outputIsRemoved();
    void installationIsRemoved();
    void settingsCannotBeStored_data();
    void settingsCannotBeStored();
    void killedInMidGeneration();
    void oddLocalesAndTimeZones_data();
    void oddLocalesAndTimeZones();
    void hugeTextIsPasted();
};

void FaultsTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    QVERIFY(QDir().mkpath(out()));
    _dialogs.answer = out();
}

std::unique_ptr<Velmora::IPLeaf> FaultsTest::openPage(const char* name, const QByteArray& script) {
    return std::make_unique<Velmora::IPLeaf>(addIP(name, script).toStdString());
}

void FaultsTest::diskFillsUp() {
    const SmallDisk disk(_prefix->path("disk"), 128);
    if (!disk.isMounted())
        QSKIP(needsRoot);
    _prefix->write("disk/b.vhd", "before");
    const auto page = openPage(bridgeName, returning("{'a.vhd': 'A', 'b.vhd': 'x' * 200000, 'c.vhd': 'C'}"));
    _dialogs.answer = disk.path();
    ConsoleRecorder recorder;
    press(*page);
    QCOMPARE(recorder.errors(),
             QStringList("E:   Unable to write file " + disk.path("b.vhd") + " (reason: No space left on device)"));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating Failed"));
    QVERIFY(QFile::exists(disk.path("b.vhd")));
    QCOMPARE(readFile(disk.path("b.vhd")), QByteArray("")); // not half a description
    QCOMPARE(readFile(disk.path("a.vhd")), QByteArray("A\n"));
    QVERIFY(!QFile::exists(disk.path("c.vhd")));
}

/// By the script, which takes the place of another program.
void FaultsTest::outputIsRemoved() {
    const auto page = openPage(filterName, "import shutil\ndef generate(argDict):\n  shutil.rmtree('" + out().toUtf8() +
                                               "')\n  return ''\n");
    fillFilter(*page);
    _dialogs.answer = out("x.vhd");
    ConsoleRecorder recorder;
    press(*page);
    QCOMPARE(recorder.errors(), QStringList("E:   Processing aborted [Unable to write file " + out("x.vhd") +
                                            "] (reason: It was removed or replaced in the meantime)"));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating failed"));
}

/// While the window is open.
void FaultsTest::installationIsRemoved() {
    const QString script = "share/velmora/Orvane/" + QString(bridgeName) + "/generator.py";
    addIP(bridgeName, returning("{}"));
    Velmora::MainWindow window;
    QVERIFY(QDir(_prefix->path("share")).removeRecursively());
    QVERIFY(QDir(_prefix->path("etc")).removeRecursively());
    window.findChild<QAbstractButton*>("IPs")->click();
    const QWidget* page = window.findChild<QStackedWidget*>("leafStack")->currentWidget();
    QTRY_COMPARE(page->findChild<QWebView*>()->page()->mainFrame()->toPlainText(),
                 QStringLiteral("Description file does not exists"));
    ConsoleRecorder recorder;
    press(*page);
    QCOMPARE(recorder.errors(),
             QStringList("E:   Unable to open script file (scriptFilename: " + _prefix->path(script) + ")"));
}

void FaultsTest::settingsCannotBeStored_data() {
    const TestTable<bool> table("isReadOnly");
    table.row("read-only", true);
    table.row("no space", false);
}

void FaultsTest::settingsCannotBeStored() {
    QFETCH(bool, isReadOnly);
    SmallDisk disk(_prefix->path("disk"), 64);
    if (!disk.isMounted())
        QSKIP(needsRoot);
    addIP(bridgeName, returning("{}"));
    const QByteArray before = "[APBToSPWLeaf]\nEntity=before\n";
    _prefix->write("disk/Orvane/Velmora.conf", before);
    if (isReadOnly)
        QVERIFY(disk.makeReadOnly());
    else
        fill(disk.path("filler"));
    Program program(*_prefix);
    program.setSettingsDirectory(disk.path());
    QCOMPARE(program.getSettingsPath(), disk.path("Orvane/Velmora.conf"));
    const Program::Outcome outcome = program.run("close");
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QStringList("  Unable to store the settings in " + program.getSettingsPath()));
    const bool isTold = outcome.output.last().contains("Settings cannot be stored in " + program.getSettingsPath());
    QCOMPARE(isTold, isReadOnly); // as soon as the program can know
    QCOMPARE(readFile(program.getSettingsPath()), before);
}

void FaultsTest::killedInMidGeneration() {
    const QString marker = _prefix->path("marker");
    addIP(filterName, "import time\ndef generate(argDict):\n  open('" + marker.toUtf8() +
                          "', 'w').close()\n  while True:\n    time.sleep(1)\n");
    _prefix->write("out/chosen.vhd", "before");
    const Program program(*_prefix);
    _prefix->write(
        "config/Orvane/Velmora.conf",
        "[General]\nsize=70\n\n[MacFirLeaf]\nCoefficients=\"1;2;3\"\nFilepath=" + out("chosen.vhd").toUtf8() + "\n");
    QProcess process;
    program.start(process, "generate");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(marker), 60'000);
    process.kill();
    QVERIFY(process.waitForFinished());
    QCOMPARE(readFile(out("chosen.vhd")), QByteArray(""));
    {
        const QSettings settings(program.getSettingsPath(), QSettings::IniFormat);
        QCOMPARE(settings.value("size").toString(), QStringLiteral("70"));
        QCOMPARE(settings.value("MacFirLeaf/Filepath").toString(), out("chosen.vhd"));
        QCOMPARE(settings.value("MacFirLeaf/Entity").toString(), QStringLiteral("probed")); // what had been typed
    }
    const Program::Outcome outcome = program.run("close");
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QStringList());
}

QByteArray FaultsTest::generateUnder(Program& program) const {
    const QString chosen = out(QString::fromUtf8("gr\xC3\xB6\xC3\x9F"
                                                 "e.vhd"));
    QFile::remove(chosen);
    const QByteArray filepath = "Filepath=" + out("gr\\xf6\\xdf\\x65.vhd").toUtf8() + "\n";
    _prefix->write("config/Orvane/Velmora.conf",
                   "[MacFirLeaf]\nCoefficients=\"1;-2;3\"\nCoefficientWidth=8\nInputDataWidth=12\n" + filepath +
                       "\n[SERDESLeaf]\nDES\\InputSignalSlope=1.5\nDES\\Termination=120\nPrefix=p\n"
                       "DataSize=3\nSER\\TrainingValue=101\nDES\\TrainingValue=101\nSERCount=0\nDESCount=0\n"
                       "WordClock=1000\n" +
                       filepath);
    const Program::Outcome outcome = program.run("generate");
    if (outcome.status != 0 || !outcome.errors.isEmpty() || !outcome.output.contains("    Generating done"))
        QTest::qFail(qPrintable((outcome.output + outcome.errors).join('\n')), __FILE__, __LINE__);
    return readFile(chosen);
}

void FaultsTest::oddLocalesAndTimeZones_data() {
    const TestTable<QString, QString> table("locale", "timeZone");
    table.row("unknown", "xx_YY.nonsense", "Nowhere/Nothing");
    table.row("other digits, far east", "ar_EG.UTF-8", "Pacific/Kiritimati");
    table.row("other letters i, own zone", "tr_TR.UTF-8", "XYZ+11:59");
}

void FaultsTest::oddLocalesAndTimeZones() {
    QFETCH(QString, locale);
    QFETCH(QString, timeZone);
    addIP("SER/DES", returning("'\\n'.join('%s=%s' % (key, argDict[key]) for key in sorted(argDict))"
                               " + '\\n%.2f ' % 0.5 + 'title'.upper() + u'\\xefi'.lower().encode('utf-8')"));
    Program plain(*_prefix);
    plain.set("LC_ALL", "C.UTF-8");
    plain.set("SOURCE_DATE_EPOCH", "1394028420");
    const QByteArray expected = generateUnder(plain);
    QVERIFY(expected.contains("%%DATE%%=05/03/2014 - 14:07\n"));
    QVERIFY(expected.contains("%%DES_INPUT_SIGNAL_SLOPE%%=\"1.5\""));
    QVERIFY(expected.contains("0.50 TITLE"));

    // Qt takes a locale's habits from its name alone; the letters of the C library need the locale itself.
    if (locale.startsWith("tr_")) {
        const QStringList arguments{"-i", locale.section('.', 0, 0), "-f", locale.section('.', 1),
                                    _prefix->path(locale)};
        if (QProcess::execute("localedef", arguments) != 0)
            QSKIP("localedef or the sources of the locale are not installed");
    }
    Program odd(*_prefix);
    odd.set("LOCPATH", _prefix->path());
    odd.set("LC_ALL", locale);
    odd.set("SOURCE_DATE_EPOCH", "1394028420");
    odd.set("TZ", timeZone);
    QCOMPARE(generateUnder(odd), expected);
}

/// The error stays readable, and the text comes back.
void FaultsTest::hugeTextIsPasted() {
    const QString text = "1;2;" + QString(1'000'000, '7');
    {
        const auto page = openPage(filterName, returning("''"));
        fillFilter(*page);
        page->findChild<QTextEdit*>("Coefficients")->setPlainText(text);
        _dialogs.answer = out("x.vhd");
        ConsoleRecorder recorder;
        press(*page);
        QCOMPARE(recorder.errors().size(), 1);
        QVERIFY(
            recorder.errors().first().startsWith("E:   Processing aborted [Invalid coefficient] (coefficient: 777"));
        QVERIFY(recorder.errors().first().size() < 1'200);
    }
    QCOMPARE(openPage(filterName, "")->findChild<QTextEdit*>("Coefficients")->toPlainText(), text);
}

VELMORA_TEST_MAIN(FaultsTest)
#include "tst_faults.moc"
