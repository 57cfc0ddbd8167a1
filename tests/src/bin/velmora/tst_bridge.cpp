#include <support/FormFixture.h>
#include <support/TestMain.h>
#include <support/TestTable.h>

#include <velmora/ips/bridge/APBToSPWLeaf.h>

#include <Brindle/core/Exception.h>

#include <Sealwork/envelope/EnvelopeOpener.h>
#include <Sealwork/envelope/EnvelopeReading.h>
#include <Sealwork/envelope/HdlPieces.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QtEndian>

namespace {

const QString failedLine = QStringLiteral("E:   Failed to generate the IP, please contact the provider.");

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
class BridgeTest : public QObject, private FormFixture {
    Q_OBJECT

private:
    /// The page of the bridge with that script; its form is driven through its widgets.
    void open(const QByteArray& script) { FormFixture::open("APB slave to serial master", script); }
    QLineEdit* entity() const { return editor<QLineEdit>("Entity"); }
    /// Generates, which ends with one error that begins like that.
    void refuse(const QString& error) const {
        const QStringList lines = generate();
        QCOMPARE(lines.size(), 3);
        QVERIFY2(lines.at(1).startsWith("E:   " + error), qPrintable(lines.at(1)));
        QCOMPARE(lines.at(2), QStringLiteral("  Generating Failed"));
    }
    QString out(const QString& name = {}) const { return _prefix->path("out" + (name.isEmpty() ? name : "/" + name)); }

private Q_SLOTS:
    void init();
    void cleanup() { end(); }

    void abandonedFormIsStored();
    void pathIsRemembered();
    void generatesFiles();
    void directoriesFollowTheRemovalRule_data();
    void directoriesFollowTheRemovalRule();
    void hostileNames_data();
    void hostileNames();
    void scriptProblemComesBeforeTheEntity();
    void failuresKeepWhatWasWritten();
    void regionsOpenAgain();
    void fullDisk();
};

void BridgeTest::init() {
    begin();
    _dialog.answer = out();
    _dialog.acceptsProposal = false;
}

void BridgeTest::abandonedFormIsStored() {
    QSettings().setValue("APBToSPWLeaf/Entity", "before");
    const std::string filename = _prefix->addBridge("").toStdString();
    try {
        const Velmora::IPLeaf page(filename);
        page.findChild<QLineEdit*>("Entity")->setText("after");
        throw 7;
    } catch (int) {
    }
    QCOMPARE(QSettings().value("APBToSPWLeaf/Entity").toString(), QStringLiteral("after"));
}

void BridgeTest::pathIsRemembered() {
    open(returning("{}"));
    _dialog.answer = QString();
    QCOMPARE(generate(), QStringList()); // cancelled
    QVERIFY(!QSettings().contains("APBToSPWLeaf/Path"));
    _dialog.answer = out();
    entity()->setText("top");
    press("Generate");
    QCOMPARE(_dialog.asked, QStringList({"Choose a directory", QDir::currentPath() + "/top"}));
    QCOMPARE(QSettings().value("APBToSPWLeaf/Path").toString(), out());
    entity()->setText("other");
    _dialog.acceptsProposal = true;
    press("Generate");
    QCOMPARE(_dialog.asked.last(), out());
}

void BridgeTest::generatesFiles() {
    open("def generate(argDict):\n"
         "  name = argDict['%%ENTITY_NAME%%']\n"
         "  printText('working')\n"
         "  return {'rtl/' + name + '.vhd': 'entity\\n', name + '.v': '\\xe9\\r\\n\\nend', 'rtl/sub/x.txt': ''}\n");
    entity()->setText("top");
    QCOMPARE(generate(), QStringList({"Generating APB slave to serial master", "R:   working", "  Generating done"}));
    QCOMPARE(treeOf(out()), QStringList({"rtl/", "rtl/sub/", "rtl/sub/x.txt", "rtl/top.vhd", "top.v"}));
    QCOMPARE(readFile(out("rtl/top.vhd")), QByteArray("entity\n\n"));
    QCOMPARE(readFile(out("top.v")), QByteArray("\xe9\r\n\nend\n"));

    _prefix->write("out/top.v", QByteArray(1000, 'x'));
    press("Generate");
    QCOMPARE(readFile(out("top.v")), QByteArray("\xe9\r\n\nend\n"));
}

void BridgeTest::directoriesFollowTheRemovalRule_data() {
    const TestTable<QString, QStringList> table("name", "tree");
    table.row("a/a.vhd", "a/a.vhd", {"a/", "a/a.vhd"});
    table.row("a/b/c", "a/b/c", {"a/", "a/b/", "a/b/c"});
    table.row("top/top", "top/top", {});
    table.row("a/", "a/", {"a/"});
}

void BridgeTest::directoriesFollowTheRemovalRule() {
    QFETCH(QString, name);
    QFETCH(QStringList, tree);
    open(returning("{'" + name.toUtf8() + "': 'x'}"));
    if (tree.isEmpty() || tree.last().endsWith('/'))
        refuse("Unable to open file " + out() + "/" + name);
    else
        press("Generate");
    QCOMPARE(treeOf(out()), tree);
    if (!tree.isEmpty())
        return;
    QVERIFY(QDir().mkpath(out("top"))); // which the rule does not make
    press("Generate");
    QCOMPARE(readFile(out("top/top")), QByteArray("x\n"));
}

void BridgeTest::hostileNames_data() {
    const TestTable<QByteArray> table("name");
    table.row("absolute", "/proc/velmora-hostile");
    table.row("climbs", "../hostile");
    table.row("climbs once the last component is removed", ".a./.a./x/a");
    table.row("NUL", QByteArray("a\\0b"));
}

void BridgeTest::hostileNames() {
    QFETCH(QByteArray, name);
    open(returning("{'0/first.vhd': '', '" + name + "': 'x'}"));
    const QStringList before = treeOf(_prefix->path());
    refuse("Unable to open file " + out() + "/");
    const QRegularExpression others("^(?!settings/)"); // which the form stores
    QCOMPARE(treeOf(_prefix->path()).filter(others), before.filter(others));
}

void BridgeTest::scriptProblemComesBeforeTheEntity() {
    open("");
    _prefix->write("share/velmora/Orvane/APB slave to serial master/generator.py",
                   "def generate(argDict): return {}\n");
    entity()->setText("'");
    refuse("Script refused: not a sealed script");
    try {
        editor<Velmora::APBToSPWLeaf>("APBToSPWLeaf")->getIP();
        QFAIL("nothing thrown");
    } catch (const Brindle::Fatal& exception) {
        QCOMPARE(exception.what(), "Script refused: not a sealed script");
        QVERIFY(exception.getField("scriptFilename").ends_with("/generator.py"));
    }
}

void BridgeTest::failuresKeepWhatWasWritten() {
    open(returning("{'a.vhd': 'A', 'b.vhd': '`protect end', 'c.vhd': 'C'}"));
    QCOMPARE(generate().mid(1), QStringList({"E:   No \"`protect begin\" found", "  Generating Failed"}));
    QCOMPARE(readFile(out("a.vhd")), QByteArray("A\n"));

    QCOMPARE(treeOf(out()), QStringList({"a.vhd", "b.vhd"}));
    QCOMPARE(readFile(out("b.vhd")), QByteArray());

    open("def generate(argDict):\n  printError('Entity name is empty.')\n  return {'d.vhd': ''}\n");
    QCOMPARE(generate().mid(1), QStringList({"E:   Entity name is empty.", failedLine, "  Generating done"}));
    QVERIFY(QFile::exists(out("d.vhd")));
}

/// With the recipient's key: every byte of the regions, and who enciphered them when.
void BridgeTest::regionsOpenAgain() {
    open(
        returning("{'x.v': '`protect begin\\n' + ''.join(chr(n) for n in range(255, 0, -1)) + '\\n//`protect end\\nb\\n"
                  "`protect begin\\nc\\n`protect end'}"));
    const qint64 before = QDateTime::currentSecsSinceEpoch() / 60;
    press("Generate");
    const QByteArray text = readFile(out("x.v"));
    const auto key = Sealwork::EnvelopeKey::load(_prefix->recipientKeyPath().toStdString(), nullptr);
    QByteArray opened;
    for (const auto& piece : Sealwork::splitAtEnvelopes({text.data(), static_cast<std::size_t>(text.size())})) {
        if (!piece.isEnvelope) {
            opened.append(piece.text.data(), static_cast<int>(piece.text.size()));
            continue;
        }
        const auto envelope = Sealwork::readEnvelope(piece.text, Sealwork::EnvelopeReading::Strict);
        QCOMPARE(envelope.language, "vlog");
        opened += bytesOf(Sealwork::EnvelopeOpener(key).open(envelope));
    }
    QByteArray expected;
    for (int byte = 255; byte > 0; --byte)
        expected += static_cast<char>(byte);
    QCOMPARE(opened, expected + "\nb\nc\n");
    QCOMPARE(text.count("`pragma protect begin_protected\n"), 2);

    const QByteArray info = QByteArray::fromHex(text.mid(text.indexOf(" info=") + 6, 32));
    const auto minutes = qFromLittleEndian<qint32>(info.constData());
    QVERIFY(minutes >= before && minutes <= QDateTime::currentSecsSinceEpoch() / 60);
    QCOMPARE(info.mid(4), QByteArray("velmora\0\x2a\0\0\0", 12));
    press("Generate");
    QVERIFY(readFile(out("x.v")) != text);
}

void BridgeTest::fullDisk() {
    open(returning("{'x.vhd': 'x' * 10}"));
    QVERIFY(QDir().mkpath(out()));
    QVERIFY(QFile::link("/dev/full", out("x.vhd")));
    refuse("Unable to write file " + out("x.vhd"));
}

VELMORA_TEST_MAIN(BridgeTest)
#include "tst_bridge.moc"
