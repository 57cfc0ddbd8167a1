#include <support/Examples.h>
#include <support/FormText.h>
#include <support/PathDialogs.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/catalogue/PageTabs.h>
#include <velmora/form/Form.h>
#include <velmora/workbench/HdlView.h>
#include <velmora/workbench/TextButton.h>
#include <velmora/workbench/Workbench.h>

#include <Quillon/ConsoleWidget.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include <csignal>
#include <memory>

using Velmora::IPLeaf;
using Velmora::Workbench;

namespace {

const QString systolic = QStringLiteral("Systolic");
const QString filledIn = QStringLiteral("Entity=top;Coefficients=1,2,3");

} // namespace

/// What the user gets beside a form, from a real velmora-generate.
class WorkbenchTest : public QObject {
    Q_OBJECT

private:
    /// Shows the page of a filter with this script; the values are those of the test's.
    void open(const QByteArray& script, const QString& program = Workbench::getDefaultProgram());
    /// Shows the page of the example with the shipped script and the values of the example.
    void openExample(const QString& example);
    void show(const QString& descriptionFilename, const QString& program = Workbench::getDefaultProgram());
    void set(const QString& values) const { FormText::write(*_page->getForm(), values); }
    QString summary() const { return _page->findChild<Velmora::TextButton*>("summaryText")->getText(); }
    QString hdl() const { return _page->findChild<Velmora::HdlView*>()->toPlainText(); }
    void click(const char* button) const { _page->findChild<QAbstractButton*>(button)->click(); }
    /// What velmora-generate itself answers to the form's configuration.
    QString ask(const QStringList& arguments) const;

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<IPLeaf> _page;
    std::unique_ptr<Workbench> _workbench;
    PathDialogs _dialogs;

private Q_SLOTS:
    void init();
    void cleanup();

    void badScripts_data();
    void badScripts();
    void editEndsTheChild();
    void wrongProgram_data();
    void wrongProgram();
    void protectedTextStaysHidden();
    void summaryLeadsToTheField();
    void copiesAndSaves();
    void findByKeyboard();
    void writtenFiles();
};

void WorkbenchTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    qputenv("ORVANE_PREFIX", QFile::encodeName(_prefix->path()));
}

void WorkbenchTest::cleanup() {
    _workbench.reset();
    _page.reset();
    _prefix.reset();
}

void WorkbenchTest::show(const QString& descriptionFilename, const QString& program) {
    _page = std::make_unique<IPLeaf>(descriptionFilename.toStdString());
    _workbench = std::make_unique<Workbench>(nullptr, program);
    _workbench->show(_page.get());
    _page->resize(900, 800);
    _page->findChild<Velmora::PageTabs*>()->setCurrentIndex(1);
    _page->show();
    QVERIFY(QTest::qWaitForWindowActive(_page.get()));
}

void WorkbenchTest::open(const QByteArray& script, const QString& program) {
    show(_prefix->addKnownIP(systolic, script), program);
    set(filledIn);
}

void WorkbenchTest::openExample(const QString& example) {
    qputenv("ORVANE_PREFIX", VELMORA_PREFIX);
    const Velmora::Configuration configuration = Examples::configuration(example);
    for (const QFileInfo& directory :
         QDir(VELMORA_PREFIX "/share/velmora/Orvane").entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString description = directory.filePath() + "/config";
        if (readFile(description).contains("name " + QByteArray::fromStdString(configuration.getName()) + "\n"))
            show(description);
    }
    _page->setConfiguration(configuration);
}

QString WorkbenchTest::ask(const QStringList& arguments) const {
    QProcess process;
    process.start(Workbench::getDefaultProgram(), arguments);
    process.write(QByteArray::fromStdString(_page->getConfiguration().getContent()));
    process.closeWriteChannel();
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

void WorkbenchTest::badScripts_data() {
    const TestTable<QByteArray, QString> table("work", "told");
    table.row("loops", "while True: pass", "the generator took longer than 5 s");
    table.row("crashes", "import os; os.abort()", "the generator crashed");
    table.row("returns 10 MB", "return 'x' * 10000000", "larger than 4 MB|longer than 5 s"); // on a busy machine
    table.row("prints 20 MB", "import sys; sys.stdout.write('x' * 20000000)", "Taps 3");
    table.row("raises", "raise ValueError('broken')", "ValueError: broken");
}

/// The window goes on meanwhile, and the next edit is answered.
void WorkbenchTest::badScripts() {
    QFETCH(QByteArray, work);
    QFETCH(QString, told);
    open("def describe(argDict):\n  return [('Taps', 3, '')]\n"
         "def generate(argDict):\n  if argDict['%%ENTITY_NAME%%'] == 'bad':\n    " +
         work + "\n  return 'entity good is end;'\n");
    set("Entity=bad");
    int turns = 0;
    qint64 longestTurn = 0;
    QElapsedTimer clock;
    QTimer ticks;
    connect(&ticks, &QTimer::timeout, this, [&] {
        longestTurn = std::max(longestTurn, clock.restart());
        ++turns;
    });
    clock.start();
    ticks.start(10);
    QTRY_VERIFY2(summary().contains(QRegularExpression(told)), qPrintable(summary()));
    QVERIFY(turns > 5);
    QVERIFY2(longestTurn < 2000, qPrintable(QString::number(longestTurn)));
    set("Entity=good");
    QTRY_VERIFY(hdl() == "entity good is end;\n");
    QCOMPARE(summary(), QStringLiteral("Taps 3"));
}

void WorkbenchTest::editEndsTheChild() {
    const QString log = _prefix->path("log");
    open("import os, time\ndef generate(argDict):\n  with open('" + log.toUtf8() +
         "', 'a') as log:\n    log.write('%d\\n' % os.getpid())\n  if argDict['%%ENTITY_NAME%%'] == 'top':\n    "
         "time.sleep(60)\n"
         "  return 'entity %s is end;' % argDict['%%ENTITY_NAME%%']\n");
    const auto children = [&log] { return QString::fromUtf8(readFile(log)).split('\n', Qt::SkipEmptyParts); };
    QTRY_COMPARE(QFile::exists(log) ? children().size() : 0, 1);
    for (const char* entity : {"a", "ab", "abc"})
        set(QStringLiteral("Entity=") + entity);
    const int first = children().constFirst().toInt();
    QTRY_VERIFY_WITH_TIMEOUT(kill(first, 0) == -1, 3000); // before its time is over
    QTRY_COMPARE(hdl(), QStringLiteral("entity abc is end;\n"));
    QCOMPARE(children().size(), 2); // not one for each letter
    _workbench->show(nullptr);
    set("Entity=hidden");
    QTest::qWait(1000);
    QCOMPARE(children().size(), 2);
}

void WorkbenchTest::wrongProgram_data() {
    const TestTable<QByteArray, QString> table("program", "told");
    table.row("missing", "", "No preview: there is no ");
    table.row("of another version", "#!/bin/sh\necho velmora-generate 0.9.1\n",
              "is of version 0.9.1, this program of 1.0.0");
}

void WorkbenchTest::wrongProgram() {
    QFETCH(QByteArray, program);
    QFETCH(QString, told);
    const QString filename = program.isEmpty() ? _prefix->path("none") : _prefix->write("tool", program);
    QFile::setPermissions(filename, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    open(returning("'x'"), filename);
    QTRY_VERIFY2(summary().contains(told), qPrintable(summary()));
    QVERIFY(_page->findChild<QLabel*>("previewRemarks")->text().contains(told));
    QVERIFY(!_page->findChild<QPushButton*>("copyHdl")->isEnabled());
    _dialogs.answer = _prefix->path("out.vhd");
    QTest::mousePress(_page->findChild<QPushButton*>("Generate"), Qt::LeftButton);
    QCOMPARE(readFile(_dialogs.answer), QByteArray("x\n"));
}

void WorkbenchTest::protectedTextStaysHidden() {
    open(returning("'open\\n--`protect begin\\nsecret\\n--`protect end\\nend'"));
    QTRY_VERIFY(hdl().contains("begin_protected"));
    click("copyHdl");
    const QString copied = QGuiApplication::clipboard()->text();
    QVERIFY(copied.startsWith("open\n") && copied.endsWith("\nend\n"));
    QVERIFY(!copied.contains("secret") && !hdl().contains("secret"));
}

void WorkbenchTest::summaryLeadsToTheField() {
    open("def generate(argDict):\n  printError('Coefficients are dull.')\n  return ''\n");
    set("Entity=");
    auto* entity = _page->findChild<QWidget*>("Entity");
    QTRY_COMPARE(summary(), QStringLiteral("Entity name not specified!"));
    click("summaryText");
    QVERIFY(entity->property("refused").toBool() && entity->hasFocus());
    set(filledIn); // now the script refuses it
    QVERIFY(!entity->property("refused").toBool());
    QTRY_COMPARE(summary(), QStringLiteral("Coefficients are dull."));
    click("summaryText");
    QVERIFY(_page->findChild<QWidget*>("Coefficients")->property("refused").toBool());

    open("def describe(argDict):\n  printText('Coefficients are odd.')\n  return []\n" + returning("''"));
    QTRY_COMPARE(summary(), QStringLiteral("Coefficients are odd."));
    _page->findChild<QWidget*>("Entity")->setFocus();
    click("summaryText"); // nothing is refused
    QVERIFY(_page->findChild<QWidget*>("Coefficients")->hasFocus());
}

void WorkbenchTest::copiesAndSaves() {
    qputenv("SOURCE_DATE_EPOCH", "0");
    openExample("fir_systolic");
    QTRY_VERIFY(summary().startsWith("Taps 7 "));
    QVERIFY(hdl().contains("entity fir_systolic is"));
    click("copyInstantiation");
    QCOMPARE(QGuiApplication::clipboard()->text(), ask({"instantiate", "-"}));
    _dialogs.acceptsProposal = true;
    click("saveBench");
    auto* message = _page->findChild<QLabel*>("previewMessage");
    QTRY_VERIFY2(message->text().contains("fir_systolic_tb.vhd is written"), qPrintable(message->text()));
    const QString bench = ask({"bench", "-", "-o", "-"});
    QCOMPARE(QString::fromUtf8(readFile("fir_systolic_tb.vhd")), bench);
    QVERIFY(QFile::remove("fir_systolic_tb.vhd"));
    click("saveBench");
    set("Entity=edited"); // meanwhile
    QTRY_VERIFY(QFile::exists("fir_systolic_tb.vhd"));
    QCOMPARE(QString::fromUtf8(readFile("fir_systolic_tb.vhd")), bench);
    QTRY_VERIFY(hdl().contains("entity edited is"));
    _dialogs.acceptsProposal = false;
    _dialogs.answer = "/dev/null/bench.vhd";
    click("saveBench");
    QTRY_VERIFY2(message->text().contains("Unable to"), qPrintable(message->text()));
    qunsetenv("SOURCE_DATE_EPOCH");
}

void WorkbenchTest::findByKeyboard() {
    open(returning("'one Two three two\\n'"));
    QTRY_VERIFY(hdl().startsWith("one"));
    auto* view = _page->findChild<Velmora::HdlView*>();
    const auto press = [](int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    };
    press(Qt::Key_P, Qt::AltModifier);
    for (const char* stop : {"copyHdl", "saveBench", "previewSheet", "hdlView"}) {
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget()->objectName(), QString(stop));
    }
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "two");
    QCOMPARE(view->textCursor().selectionStart(), 4);
    for (const int place : {14, 4}) {
        press(Qt::Key_Return);
        QCOMPARE(view->textCursor().selectionStart(), place);
    }
}

void WorkbenchTest::writtenFiles() {
    Quillon::ConsoleWidget console(nullptr);
    console.show();
    open(returning("'x'"));
    _dialogs.answer = "out.vhd";
    QTest::mousePress(_page->findChild<QPushButton*>("Generate"), Qt::LeftButton);
    const auto copyPath = [](const QMenu* menu) {
        QGuiApplication::clipboard()->clear();
        const QAction* first = menu->actions().value(0);
        const QMenu* entry = first ? first->menu() : nullptr;
        if (entry && entry->title() == "out.vhd")
            entry->actions().constLast()->trigger();
        return QGuiApplication::clipboard()->text();
    };
    const QString path = QDir::current().absoluteFilePath("out.vhd");
    QCOMPARE(copyPath(_page->findChild<QWidget*>("summaryLine")->findChild<QMenu*>()), path);

    QString copied;
    const auto openMenu = [&](const char* line) {
        console.setTextCursor(console.document()->find(line));
        QTimer::singleShot(0, &console, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            copied = copyPath(menu);
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint());
        QApplication::sendEvent(&console, &event);
    };
    openMenu("Generating done");
    QCOMPARE(copied, path);
    openMenu("Generating Systolic");
    QCOMPARE(copied, QString());
}

VELMORA_TEST_MAIN(WorkbenchTest)
#include "tst_workbench.moc"
