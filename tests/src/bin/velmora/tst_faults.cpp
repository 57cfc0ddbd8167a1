#include <Python.h> // wants to be the first header

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
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QTest>
#include <QTextEdit>
#include <QTreeView>
#include <QWebFrame>
#include <QWebView>
#include <QtEndian>

#include <array>
#include <functional>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The address sanitizer keeps freed memory, and wants to be the first library that is preloaded.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

constexpr const char* bridgeName = "APB slave to serial master";
constexpr const char* filterName = "Mac fir";
constexpr const char* needsRoot = "mounting a file system takes root";

/// KiB of the process that are in memory.
long residentSize() {
    const QByteArray pages = readFile("/proc/self/statm").split(' ').value(1);
    return pages.toLong() * sysconf(_SC_PAGESIZE) / 1024;
}

/// What the work finds out in a child of this process, which both begin with the same memory.
long measureInChild(const std::function<long()>& work) {
    std::array<int, 2> pipeEnds{};
    if (pipe(pipeEnds.data()) != 0)
        qFatal("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        const long result = work();
        const bool isTold = write(pipeEnds[1], &result, sizeof result) == sizeof result;
        _exit(isTold ? 0 : 1);
    }
    long result = 0;
    int status = -1;
    if (read(pipeEnds[0], &result, sizeof result) != sizeof result || waitpid(child, &status, 0) != child ||
        status != 0)
        qFatal("the child failed");
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    return result;
}

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

    void manyGenerationsInARow(); // the first, as long as the memory is compact
    void diskFillsUp_data();
    void diskFillsUp();
    void installationIsRemoved();
    void scriptFileIsReplaced();
    void settingsCannotBeStored_data();
    void settingsCannotBeStored();
    void killedInMidGeneration_data();
    void killedInMidGeneration();
    void clockIsWrong_data();
    void clockIsWrong();
    void oddLocalesAndTimeZones_data();
    void oddLocalesAndTimeZones();
    void hugeTextIsPasted_data();
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

void FaultsTest::manyGenerationsInARow() {
    if (isSanitized)
        QSKIP("the sanitizer keeps freed memory");
    constexpr int warmUpCount = 50; // what is kept for good is there then
    constexpr int generationCount = 300;
    constexpr long allowance = 2; // KiB a generation
    const auto page = openPage(filterName, returning("'x' * 10000 + repr(argDict)"));
    fillFilter(*page);
    _dialogs.answer = out("x.vhd");
    press(*page); // sets the interpreter's flags and home
    QVERIFY(readFile(_dialogs.answer).startsWith("xxx"));
    const auto growthOf = [](const auto& work) {
        return measureInChild([&work] {
            for (int round = 0; round < warmUpCount; ++round)
                work();
            const long before = residentSize();
            for (int round = 0; round < generationCount; ++round)
                work();
            return residentSize() - before;
        });
    };
    const long growth = growthOf([&page] { press(*page); });
    const long bareGrowth = growthOf([] {
        Py_InitializeEx(0);
        Py_Finalize();
    });
    qInfo("growth in KiB: %ld with generations, %ld with the interpreter alone", growth, bareGrowth);
    QVERIFY(growth - bareGrowth <= allowance * generationCount);
}

void FaultsTest::diskFillsUp_data() {
    const TestTable<QByteArray, QByteArray, QString, QString> table("ipName", "script", "filename", "error");
    table.row("bridge, between two files", bridgeName, returning("{'a.vhd': 'A', 'b.vhd': 'x' * 200000, 'c.vhd': 'C'}"),
              "", "E:   Unable to write file %1 (reason: No space left on device)");
    table.row("filter", filterName, returning("'x' * 200000"), "b.vhd",
              "E:   Processing aborted [Unable to write file %1] (reason: No space left on device)");
}

void FaultsTest::diskFillsUp() {
    QFETCH(QByteArray, ipName);
    QFETCH(QByteArray, script);
    QFETCH(QString, filename);
    QFETCH(QString, error);
    const SmallDisk disk(_prefix->path("disk"), 128);
    if (!disk.isMounted())
        QSKIP(needsRoot);
    _prefix->write("disk/b.vhd", "before");
    _prefix->write("disk/kept.txt", "kept");
    auto page = openPage(ipName, script);
    if (ipName == filterName)
        fillFilter(*page);
    _dialogs.answer = filename.isEmpty() ? disk.path() : disk.path(filename);
    ConsoleRecorder recorder;
    press(*page);
    QCOMPARE(recorder.errors(), QStringList(error.arg(disk.path("b.vhd"))));
    QCOMPARE(recorder.lines().last().toLower(), QStringLiteral("  generating failed"));
    QCOMPARE(readFile(disk.path("b.vhd")), QByteArray("")); // not half a description
    QVERIFY(QFile::exists(disk.path("b.vhd")));
    QCOMPARE(readFile(disk.path("kept.txt")), QByteArray("kept"));
    QCOMPARE(readFile(disk.path("a.vhd")), ipName == bridgeName ? QByteArray("A\n") : QByteArray());
    QVERIFY(!QFile::exists(disk.path("c.vhd")));
}

void FaultsTest::installationIsRemoved() {
    addIP(bridgeName, returning("{}"));
    addIP(filterName, returning("''"));
    Velmora::MainWindow window;
    window.findChild<QAbstractButton*>("IPs")->click();
    QVERIFY(QDir(_prefix->path("share")).removeRecursively());
    QVERIFY(QDir(_prefix->path("etc")).removeRecursively());
    ConsoleRecorder recorder;
    auto* tree = window.findChild<QTreeView*>("treeView");
    const QModelIndex category = tree->model()->index(0, 0);
    for (int row = 0; row < 2; ++row) {
        tree->setCurrentIndex(tree->model()->index(row, 0, category));
        const QWidget* page = window.findChild<QStackedWidget*>("leafStack")->currentWidget();
        const auto* view = page->findChild<QWebView*>();
        QTRY_COMPARE(view->page()->mainFrame()->toPlainText(), QStringLiteral("Description file does not exists"));
        if (page->findChild<QTextEdit*>("Coefficients")) {
            fillFilter(*page);
            _dialogs.answer = out("chosen.vhd");
        } else {
            _dialogs.answer = out();
        }
        press(*page);
    }
    QCOMPARE(recorder.errors().size(), 2);
    for (const QString& error : recorder.errors()) {
        QVERIFY2(error.contains("Unable to open script file"), qPrintable(error));
        QVERIFY2(error.contains("scriptFilename: " + _prefix->path("share/velmora/Orvane/")), qPrintable(error));
    }
    window.close();
    QCOMPARE(QSettings().status(), QSettings::NoError);
}

/// It is read when the user presses Generate.
void FaultsTest::scriptFileIsReplaced() {
    const auto page = openPage(bridgeName, returning("{'x.vhd': ''}"));
    const QString script = QString::fromStdString(page->getScriptFilename());
    _prefix->write(QDir(_prefix->path()).relativeFilePath(script), readFile(script).chopped(60));
    ConsoleRecorder recorder;
    press(*page);
    QCOMPARE(recorder.errors(), QStringList("E:   Script refused: truncated or malformed"));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating Failed"));
    QVERIFY(QDir(out()).isEmpty());
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

void FaultsTest::killedInMidGeneration_data() {
    const TestTable<QByteArray, QString, QString> table("ipName", "group", "pathKey");
    table.row("bridge", bridgeName, "APBToSPWLeaf", "Path");
    table.row("filter", filterName, "MacFirLeaf", "Filepath");
}

void FaultsTest::killedInMidGeneration() {
    QFETCH(QByteArray, ipName);
    QFETCH(QString, group);
    QFETCH(QString, pathKey);
    const QString marker = _prefix->path("marker");
    addIP(ipName, "import time\ndef generate(argDict):\n  open('" + marker.toUtf8() +
                      "', 'w').close()\n  while True:\n    time.sleep(1)\n");
    const QString chosen = ipName == filterName ? out("chosen.vhd") : out().chopped(1);
    _prefix->write("out/chosen.vhd", "before");
    _prefix->write("out/kept.vhd", "kept");
    const Program program(*_prefix);
    _prefix->write("config/Orvane/Velmora.conf", "[General]\nsize=70\n\n[" + group.toUtf8() +
                                                     "]\nCoefficients=\"1;2;3\"\n" + pathKey.toUtf8() + "=" +
                                                     chosen.toUtf8() + "\n");
    QProcess process;
    program.start(process, "generate");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(marker), 20'000);
    process.kill();
    QVERIFY(process.waitForFinished());

    QCOMPARE(readFile(out("kept.vhd")), QByteArray("kept"));
    QCOMPARE(readFile(out("chosen.vhd")), ipName == filterName ? QByteArray("") : QByteArray("before"));
    {
        const QSettings settings(program.getSettingsPath(), QSettings::IniFormat);
        QCOMPARE(settings.status(), QSettings::NoError);
        QCOMPARE(settings.value("size").toString(), QStringLiteral("70"));
        QCOMPARE(settings.value(group + "/" + pathKey).toString(), chosen);
        QCOMPARE(settings.value(group + "/Entity").toString(), QStringLiteral("probed")); // what had been typed
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

void FaultsTest::clockIsWrong_data() {
    const TestTable<qint64, QString> table("time", "date");
    table.row("1970", qint64{5}, "01/01/1970 - 00:00");
    table.row("2038", qint64{2'147'483'700}, "19/01/2038 - 03:15");
    table.row("2106", qint64{4'294'967'340}, "07/02/2106 - 06:29");
}

void FaultsTest::clockIsWrong() {
    QFETCH(qint64, time);
    QFETCH(QString, date);
    const QString faketime = QStandardPaths::findExecutable("faketime");
    if (isSanitized || faketime.isEmpty())
        QSKIP("setting the clock of a process takes the program faketime and a build without sanitizers");
    addIP(filterName, returning("argDict['%%DATE%%'] + '\\n`protect begin\\nx\\n`protect end\\n'"));
    Program program(*_prefix);
    program.set("TZ", "UTC");
    program.set("FAKETIME_DONT_FAKE_MONOTONIC", "1");
    program.setLauncher(
        {faketime, "-f", "@" + QDateTime::fromSecsSinceEpoch(time, Qt::UTC).toString("yyyy-MM-dd hh:mm:ss")});
    const QByteArray generated = generateUnder(program);
    QVERIFY2(generated.startsWith(date.toLatin1()), generated.left(30).constData());
    const int place = generated.indexOf(" info=") + 6;
    const QByteArray info = QByteArray::fromHex(generated.mid(place, 8));
    const auto minutes = static_cast<qint32>(qFromLittleEndian<quint32>(info.constData()));
    QCOMPARE(minutes, static_cast<qint32>(time / 60));
}

void FaultsTest::oddLocalesAndTimeZones_data() {
    const TestTable<QString, QString> table("locale", "timeZone");
    table.row("none", "C", "");
    table.row("unknown", "xx_YY.nonsense", "Nowhere/Nothing");
    table.row("decimal comma, half an hour", "de_DE.UTF-8", "Asia/Kathmandu");
    table.row("other digits, far east", "ar_EG.UTF-8", "Pacific/Kiritimati");
    table.row("other letters i, own zone", "tr_TR.UTF-8", "XYZ+11:59");
    table.row("not UTF-8, file as zone", "tr_TR.ISO-8859-9", ":/dev/null");
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

void FaultsTest::hugeTextIsPasted_data() {
    const TestTable<QString, QString> table("text", "error");
    constexpr int size = 1'000'000; // bytes
    table.row("one number a line", QStringLiteral("x\"07ff\"\n").repeated(size / 8), "");
    table.row("numbers, one too long", "1;2;" + QString(size, '7'),
              "E:   Processing aborted [Invalid coefficient] (coefficient: 777");
    table.row("prose", QStringLiteral("lorem ipsum, ").repeated(size / 13),
              "E:   Processing aborted [Invalid coefficient] (coefficient: lorem ipsum)");
}

void FaultsTest::hugeTextIsPasted() {
    QFETCH(QString, text);
    QFETCH(QString, error);
    constexpr qint64 patience = 20'000; // ms
    constexpr int longestLine = 1'200;  // characters
    QElapsedTimer timer;
    timer.start();
    {
        const auto page = openPage(filterName, returning("'\\n'.join(argDict['%%COEFS%%'].split(', '))"));
        fillFilter(*page);
        page->findChild<QTextEdit*>("Coefficients")->setPlainText(text);
        _dialogs.answer = out("x.vhd");
        ConsoleRecorder recorder;
        press(*page);
        QCOMPARE(recorder.errors().size(), error.isEmpty() ? 0 : 1);
        if (!error.isEmpty()) {
            QVERIFY2(recorder.errors().first().startsWith(error), qPrintable(recorder.errors().first()));
            QVERIFY(recorder.errors().first().size() < longestLine);
        }
        QCOMPARE(readFile(_dialogs.answer).count('\n'), error.isEmpty() ? text.size() / 8 : 0);

        auto* entity = page->findChild<QLineEdit*>("Entity");
        entity->insert(text); // a line holds 32,767 characters, line ends among them
        page->findChild<QTextEdit*>("Coefficients")->setPlainText("1;2;3");
        recorder.take();
        press(*page);
        const bool isOneWord = !entity->text().contains('\n');
        QCOMPARE(recorder.errors().size(), isOneWord ? 0 : 1);
        if (!isOneWord) {
            QVERIFY(recorder.errors().first().contains("[Unsupported character in value] (key: %%ENTITY_NAME%%"));
            QVERIFY(recorder.errors().first().size() < longestLine);
        }
        page->findChild<QTextEdit*>("Coefficients")->setPlainText(text);
    }
    const auto page = openPage(filterName, "");
    QCOMPARE(page->findChild<QTextEdit*>("Coefficients")->toPlainText(), text);
    QVERIFY(timer.elapsed() < patience);
}

VELMORA_TEST_MAIN(FaultsTest)
#include "tst_faults.moc"
