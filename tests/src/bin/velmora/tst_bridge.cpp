#include <support/ConsoleRecorder.h>
#include <support/PathDialogs.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/APBToSPWLeaf.h>
#include <velmora/IPLeaf.h>

#include <Brindle/Exception.h>

#include <Sealwork/EnvelopeOpener.h>
#include <Sealwork/HdlPieces.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QtEndian>

#include <memory>
#include <optional>

namespace {

const QString failedLine = QStringLiteral("E:   Failed to generate the IP, please contact the provider.");

QByteArray returning(const QByteArray& expression) {
    return "def generate(argDict):\n  return " + expression + "\n";
}

/// Paths below the directory, sorted; directories end with "/".
QStringList treeOf(const QString& directory) {
    QStringList paths;
    QDirIterator iterator(directory, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString path = iterator.next();
        paths += QDir(directory).relativeFilePath(path) + (iterator.fileInfo().isDir() ? "/" : "");
    }
    paths.sort();
    return paths;
}

} // namespace

/// The form of the bridge and, on it, the generate flow: dialog, script, files, console and what remains of a failure.
class BridgeTest : public QObject {
    Q_OBJECT

private:
    /// The page of the bridge with that script; its form is driven through its widgets.
    void open(const QByteArray& script) {
        _page = std::make_unique<Velmora::IPLeaf>(_prefix->addBridge(script).toStdString());
    }
    Velmora::APBToSPWLeaf* form() const { return _page->findChild<Velmora::APBToSPWLeaf*>("APBToSPWLeaf"); }
    QLineEdit* entity() const { return form()->findChild<QLineEdit*>("Entity"); }
    void press(const char* button) const {
        QTest::mousePress(form()->findChild<QPushButton*>(button), Qt::LeftButton); // acts before it is released
    }
    QString out(const QString& name = {}) const { return _prefix->path("out" + (name.isEmpty() ? name : "/" + name)); }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<Velmora::IPLeaf> _page;
    PathDialogs _dialogs;

private Q_SLOTS:
    void init();
    void cleanup();

    void formKeepsItsValue();
    void unusableStoredValueIsIgnored_data();
    void unusableStoredValueIsIgnored();
    void abandonedFormStoresNothing();
    void layoutAndTabOrder();
    void cancelledDialogDoesNothing();
    void pathIsRemembered();
    void generatesFiles();
    void directoriesFollowTheRemovalRule_data();
    void directoriesFollowTheRemovalRule();
    void hostileNames_data();
    void hostileNames();
    void injectedEntityRunsNothing();
    void scriptProblemComesBeforeTheEntity();
    void failuresKeepWhatWasWritten();
    void entityNameIsText();
    void removedDirectoryIsMadeAgain();
    void regionsAreEnciphered();
    void regionsOpenAgain_data();
    void regionsOpenAgain();
    void markerErrors();
    void missingScript();
    void unwritableDirectory();
    void fullDisk_data();
    void fullDisk();
};

void BridgeTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _dialogs.answer = out();
    _dialogs.acceptsProposal = false;
    _dialogs.asked.clear();
}

void BridgeTest::cleanup() {
    _page.reset();
    _prefix.reset();
}

void BridgeTest::formKeepsItsValue() {
    open("");
    QCOMPARE(entity()->text(), QString());
    QVERIFY(form()->isFullyConfigured());
    QTest::keyClicks(entity(), "bridge");
    _page.reset();
    QCOMPARE(QSettings().value("APBToSPWLeaf/Entity").toString(), QStringLiteral("bridge"));
    open("");
    QCOMPARE(entity()->text(), QStringLiteral("bridge"));
    press("Reset");
    QCOMPARE(entity()->text(), QString());
    QCOMPARE(QSettings().value("APBToSPWLeaf/Entity").toString(), QStringLiteral("bridge"));
}

void BridgeTest::unusableStoredValueIsIgnored_data() {
    const TestTable<QVariant> table("stored");
    table.row("list", QVariant(QStringList{"a", "b"}));
    table.row("bytes", QVariant(QByteArray("a\0b", 3)));
    table.row("map", QVariant(QVariantMap{{"a", 1}}));
}

void BridgeTest::unusableStoredValueIsIgnored() {
    QFETCH(QVariant, stored);
    QSettings().setValue("APBToSPWLeaf/Entity", stored);
    open("");
    QCOMPARE(entity()->text(), QString());
}

void BridgeTest::abandonedFormStoresNothing() {
    QSettings().setValue("APBToSPWLeaf/Entity", "before");
    const std::string filename = _prefix->addBridge("").toStdString();
    try {
        const Velmora::IPLeaf page(filename);
        page.findChild<QLineEdit*>("Entity")->setText("after");
        throw 7;
    } catch (int) {
    }
    QCOMPARE(QSettings().value("APBToSPWLeaf/Entity").toString(), QStringLiteral("before"));
}

void BridgeTest::layoutAndTabOrder() {
    open("");
    const auto* grid = qobject_cast<QGridLayout*>(form()->layout());
    QCOMPARE(grid->contentsMargins(), QMargins(5, 5, 5, 5));
    QCOMPARE(grid->columnStretch(1), 1);
    QCOMPARE(grid->columnStretch(2), 1);
    QCOMPARE(grid->rowStretch(1), 1);
    auto* label = qobject_cast<QLabel*>(grid->itemAtPosition(0, 0)->widget());
    QCOMPARE(label->text(), QStringLiteral("Entity name"));
    QCOMPARE(label->buddy(), entity());
    QCOMPARE(grid->itemAtPosition(0, 1)->widget(), entity());

    _page->show();
    QApplication::setActiveWindow(_page.get());
    entity()->setFocus();
    QStringList names;
    for (int step = 0; step < 2; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        names += QApplication::focusWidget()->objectName();
    }
    QCOMPARE(names, QStringList({"Reset", "Generate"}));
}

void BridgeTest::cancelledDialogDoesNothing() {
    open(returning("{'a': ''}"));
    _dialogs.answer = QString();
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines(), QStringList());
    QVERIFY(!QSettings().contains("APBToSPWLeaf/Path"));
}

void BridgeTest::pathIsRemembered() {
    open(returning("{}"));
    entity()->setText("top");
    press("Generate");
    QCOMPARE(_dialogs.asked, QStringList({"Choose a directory", QDir::currentPath() + "/top"}));
    QCOMPARE(QSettings().value("APBToSPWLeaf/Path").toString(), out());
    entity()->setText("other");
    _dialogs.acceptsProposal = true;
    press("Generate");
    QCOMPARE(_dialogs.asked.last(), out());
}

void BridgeTest::generatesFiles() {
    open("def generate(argDict):\n"
         "  name = argDict['%%ENTITY_NAME%%']\n"
         "  printText('working')\n"
         "  return {'rtl/' + name + '.vhd': 'entity\\n', name + '.v': '\\xe9\\r\\n\\nend', 'rtl/sub/x.txt': ''}\n");
    entity()->setText("top");
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines(),
             QStringList({"Generating APB slave to serial master", "  working", "  Generating done"}));
    QCOMPARE(treeOf(out()), QStringList({"rtl/", "rtl/sub/", "rtl/sub/x.txt", "rtl/top.vhd", "top.v"}));
    QCOMPARE(readFile(out("rtl/top.vhd")), QByteArray("entity\n\n"));
    QCOMPARE(readFile(out("top.v")), QByteArray("\xe9\r\n\nend\n"));

    _prefix->write("out/top.v", QByteArray(1000, 'x'));
    press("Generate");
    QCOMPARE(readFile(out("top.v")), QByteArray("\xe9\r\n\nend\n"));
    Brindle::console.print("after");
    QCOMPARE(recorder.lines().last(), QStringLiteral("after")); // no longer indented
}

void BridgeTest::directoriesFollowTheRemovalRule_data() {
    const TestTable<QString, QStringList> table("name", "tree");
    table.row("a/a.vhd", "a/a.vhd", {"a/", "a/a.vhd"});
    table.row("a/b/c", "a/b/c", {"a/", "a/b/", "a/b/c"});
    table.row("top/top", "top/top", {});
    table.row("xtopy/top", "xtopy/top", {"xy/"});
    table.row("a/", "a/", {"a/"});
    table.row("empty", "", {});
}

void BridgeTest::directoriesFollowTheRemovalRule() {
    QFETCH(QString, name);
    QFETCH(QStringList, tree);
    open(returning("{'" + name.toUtf8() + "': 'x'}"));
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(treeOf(out()), tree);
    if (tree.isEmpty() || tree.last().endsWith('/')) {
        QCOMPARE(recorder.lines().mid(1),
                 QStringList({"E:   Unable to open file " + out() + "/" + name, "  Generating Failed"}));
    }
}

void BridgeTest::hostileNames_data() {
    const TestTable<QByteArray> table("name");
    table.row("absolute", "/proc/velmora-hostile");
    table.row("climbs", "../hostile");
    table.row("climbs from below", "a/../../hostile");
    table.row("parent itself", "..");
    table.row("climbs once the last component is removed", ".a./.a./x/a");
    table.row("NUL", QByteArray("a\\0b"));
}

void BridgeTest::hostileNames() {
    QFETCH(QByteArray, name);
    open(returning("{'0/first.vhd': '', '" + name + "': 'x'}"));
    const QStringList before = treeOf(_prefix->path());
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.errors().size(), 1);
    QVERIFY(recorder.errors().first().startsWith("E:   Unable to open file " + out() + "/"));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating Failed"));
    QStringList after = treeOf(_prefix->path());
    after.removeAll("settings/Orvane/Velmora.conf");
    after.removeAll("settings/Orvane/");
    after.removeAll("settings/");
    QStringList expected = before;
    expected.removeAll("settings/");
    QCOMPARE(after, expected);
}

void BridgeTest::injectedEntityRunsNothing() {
    open(returning("{'a': 'x'}"));
    entity()->setText("x' + open('hostile', 'w').write('') + '");
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.errors().size(), 1);
    QVERIFY(recorder.errors().first().startsWith(
        "E:   Unsupported character in value (key: %%ENTITY_NAME%%, value: x' + open("));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating Failed"));
    QVERIFY(!QFile::exists("hostile"));
    QVERIFY(!QFile::exists(out()));
}

void BridgeTest::scriptProblemComesBeforeTheEntity() {
    open("");
    _prefix->write("share/velmora/Orvane/bridge/generator.py", "def generate(argDict): return {}\n");
    entity()->setText("'");
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.errors().size(), 1);
    QVERIFY(recorder.errors().first().startsWith("E:   Script refused: not a sealed script"));
    try {
        form()->getIP();
        QFAIL("nothing thrown");
    } catch (const Brindle::Fatal& exception) {
        QCOMPARE(exception.what(), "Script refused: not a sealed script");
    }
}

void BridgeTest::failuresKeepWhatWasWritten() {
    open(returning("{'a.vhd': 'A', 'b.vhd': '`protect end', 'c.vhd': 'C'}"));
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines().mid(1), QStringList({"E:   No \"`protect begin\" found", "  Generating Failed"}));
    QCOMPARE(readFile(out("a.vhd")), QByteArray("A\n"));
    QVERIFY(!QFile::exists(out("c.vhd")));

    open("def generate(argDict):\n  printError('Entity name is empty.')\n  return {'d.vhd': ''}\n");
    recorder.take();
    press("Generate");
    QCOMPARE(recorder.take(), QStringList({"Generating APB slave to serial master", "E:   Entity name is empty.",
                                           failedLine, "  Generating done"}));
    QVERIFY(QFile::exists(out("d.vhd")));

    open("def generate(argDict):\n  raise KeyError('x')\n");
    press("Generate");
    QCOMPARE(recorder.errors(), QStringList({"E:   Traceback (most recent call last):", "E:   Should not be here"}));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating Failed"));
}

void BridgeTest::entityNameIsText() {
    open(returning("{'echo': argDict['%%ENTITY_NAME%%']}"));
    entity()->setText(QString::fromUtf8("caf\xC3\xA9"));
    press("Generate");
    QCOMPARE(readFile(out("echo")), QByteArray("caf\xC3\xA9\n"));
}

void BridgeTest::removedDirectoryIsMadeAgain() {
    open(returning("{'x.vhd': 'x'}"));
    press("Generate");
    QVERIFY(QDir(out()).removeRecursively());
    press("Generate");
    QCOMPARE(readFile(out("x.vhd")), QByteArray("x\n"));
}

void BridgeTest::regionsAreEnciphered() {
    open(returning("{'x.vhd': 'a\\n`protect begin\\nsecret\\n`protect end\\nc', "
                   "'x.v': '//`protect begin\\nsecret\\n//`protect end'}"));
    press("Generate");
    const QByteArray vhdl = readFile(out("x.vhd"));
    QVERIFY(vhdl.startsWith("a\n`protect begin_protected\n`protect version=1\n"));
    QVERIFY(vhdl.endsWith("\n`protect end_protected\nc\n"));
    const QByteArray verilog = readFile(out("x.v"));
    QVERIFY(verilog.startsWith("`pragma protect begin_protected\n"));
    QVERIFY(verilog.endsWith("\n`pragma protect end_protected\n"));
    QVERIFY(!vhdl.contains("secret") && !verilog.contains("secret"));

    const int place = vhdl.indexOf(" info=") + 6;
    const QByteArray info = QByteArray::fromHex(vhdl.mid(place, vhdl.indexOf(' ', place) - place));
    QCOMPARE(info.size(), 16);
    const auto minutes = qFromLittleEndian<qint32>(info.constData());
    QVERIFY(qAbs(minutes - QDateTime::currentSecsSinceEpoch() / 60) <= 1);
    QCOMPARE(info.mid(4), QByteArray("velmora\0\x2a\0\0\0", 12));
    press("Generate");
    QVERIFY(readFile(out("x.vhd")) != vhdl);
}

void BridgeTest::regionsOpenAgain_data() {
    const TestTable<QString, QByteArray, int, QByteArray> table("name", "content", "regionCount",
                                                                "opened"); // content: as a Python literal
    for (const char* name : {"x.vhd", "x.v", "x.vh"}) {
        const auto named = [name](const char* what) { return QByteArray(name) + ": " + what; };
        table.row(named("between"), name, "'a\\n-- `protect begin\\nb\\nc\\n-- `protect end\\nd'", 1, "a\nb\nc\nd\n");
        table.row(named("at the start and at the end"), name,
                  "'`protect begin\\na\\n`protect end\\nb\\n`protect begin\\nc\\n`protect end'", 2, "a\nb\nc\n");
        table.row(named("one after another"), name,
                  "'`protect begin\\na\\n`protect end\\n`protect begin\\nb\\n`protect end\\n'", 2, "a\nb\n\n");
        table.row(named("Windows line ends"), name,
                  "'a\\r\\n`protect begin\\r\\nb\\r\\n\\r\\n`protect end\\r\\nc\\r\\n'", 1, "a\r\nb\r\n\r\nc\r\n\n");
        table.row(named("every byte"), name,
                  "'`protect begin\\n' + ''.join(chr(n) for n in range(255, 0, -1)) + '\\n`protect end'", 1, nullptr);
        table.row(named("open at the end"), name, "'`protect begin\\na\\n`protect end\\nb\\n`protect begin\\nc'", 1,
                  "a\nb\n");
    }
}

void BridgeTest::regionsOpenAgain() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, regionCount);
    QFETCH(QByteArray, opened);
    if (opened.isNull()) {
        for (int byte = 255; byte > 0; --byte)
            opened += static_cast<char>(byte);
        opened += '\n';
    }
    open(returning("{'" + name.toLatin1() + "': " + content + "}"));
    press("Generate");
    const QByteArray text = readFile(out(name));
    const auto key = Sealwork::EnvelopeKey::load(_prefix->recipientKeyPath().toStdString(), nullptr);
    QByteArray plain;
    for (const auto& piece : Sealwork::splitAtEnvelopes({text.data(), static_cast<std::size_t>(text.size())})) {
        if (!piece.isEnvelope) {
            plain.append(piece.text.data(), static_cast<int>(piece.text.size()));
            continue;
        }
        const auto envelope = Sealwork::Envelope::parse(piece.text, Sealwork::EnvelopeReading::Strict);
        QCOMPARE(envelope.language, name == "x.vhd" ? std::string("vhdl") : std::string("vlog"));
        plain += bytesOf(Sealwork::EnvelopeOpener(key).open(envelope));
        --regionCount;
    }
    QCOMPARE(plain, opened);
    QCOMPARE(regionCount, 0);
}

void BridgeTest::markerErrors() {
    open(returning("{'x.vhd': '`protect begin\\n`protect begin'}"));
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines().mid(1), QStringList({"E:   Already encrypting", "  Generating Failed"}));
    QCOMPARE(readFile(out("x.vhd")), QByteArray());
}

void BridgeTest::missingScript() {
    open("");
    const QString script = _prefix->path("share/velmora/Orvane/bridge/generator.py");
    QVERIFY(QFile::remove(script));
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines().mid(1),
             QStringList({"E:   Unable to open script file (scriptFilename: " + script + ")", "  Generating Failed"}));
}

void BridgeTest::unwritableDirectory() {
    open(returning("{'x.vhd': ''}"));
    _dialogs.answer = QStringLiteral("/proc/velmora-out");
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines().mid(1),
             QStringList({"E:   Unable to open file /proc/velmora-out/x.vhd", "  Generating Failed"}));
}

void BridgeTest::fullDisk_data() {
    const TestTable<int> table("size");
    table.row("fails when the buffer is written out", 10);
    table.row("fails at once", 100'000);
}

void BridgeTest::fullDisk() {
    QFETCH(int, size);
    open(returning("{'x.vhd': 'x' * " + QByteArray::number(size) + "}"));
    QVERIFY(QDir().mkpath(out()));
    QVERIFY(QFile::link("/dev/full", out("x.vhd")));
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.errors().size(), 1);
    QVERIFY(recorder.errors().first().startsWith("E:   Unable to write file " + out("x.vhd")));
    QCOMPARE(recorder.lines().last(), QStringLiteral("  Generating Failed"));
}

VELMORA_TEST_MAIN(BridgeTest)
#include "tst_bridge.moc"
