#include <support/FormFixture.h>
#include <support/ReadFile.h>
#include <support/TestMain.h>
#include <support/TestTable.h>

#include <velmora/window/FileMenu.h>
#include <velmora/window/Folio.h>
#include <velmora/window/MainWindow.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSpinBox>
#include <QSplitter>

namespace {

const QByteArray description = readFile(QStringLiteral(VELMORA_DESCRIBED_FORM));

const QByteArray returnsRegisters = "import ast\n"
                                    "def generate(argDict):\n"
                                    "  return repr(ast.literal_eval(argDict['%%REGISTERS%%']))\n";

} // namespace

/// Forms that IPs describe as data.
class DescribedTest : public QObject, private FormFixture {
    Q_OBJECT

private:
    /// The page of an IP with the form and that script, filled in so that nothing is wrong.
    void openFilled(const QByteArray& script = echo, const QByteArray& form = description);
    std::unique_ptr<Velmora::IPLeaf> makePage(const QByteArray& form, const QByteArray& script = echo) const;

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void looksAndRemembers();
    void scriptReceivesValues();
    void checksComeInOrder_data();
    void checksComeInOrder();
    void rowsFollowTheirChoice();
    void filesGoToADirectory();
    void wrongFormIsToldWhenItIsNeeded();
    void windowReadsTheFormsThatItNeeds();
};

std::unique_ptr<Velmora::IPLeaf> DescribedTest::makePage(const QByteArray& form, const QByteArray& script) const {
    _prefix->writeScript("share/velmora/Test/thing/script.py", script);
    _prefix->write("share/velmora/Test/thing/form.json", form);
    const QString config =
        _prefix->addIP("Test/thing", "name Thing\ncategory C\nuid THING\ncompany Test\nvariants V\nscript script.py\n");
    return std::make_unique<Velmora::IPLeaf>(config.toStdString());
}

void DescribedTest::openFilled(const QByteArray& script, const QByteArray& form) {
    close();
    open(makePage(form, script));
    set("Entity=thing;List=1,-2;Registers 1=ctrl");
}

void DescribedTest::looksAndRemembers() {
    open(makePage(description));
    QCOMPARE(values(), FormText::parse("Entity=;Count=1;Rate=100.0;Reason=;Mode=First;Width=6;List="));
    QCOMPARE(cells(1), (QStringList{"0||Read|0.5", "0|"}));
    QCOMPARE(group(), QStringLiteral("IP/Test/THING"));
    QVERIFY(page().findChild<QWidget*>("DescribedLeaf"));
    const auto helpOf = [this](const QString& key) { return page().getForm()->getHelp(editor<QWidget>(key)); };
    QCOMPARE(helpOf("Rate")->text(), QStringLiteral("Range -1.0 to 500.0."));
    QCOMPARE(helpOf("Count")->text(), QStringLiteral("Range 0 to 32."));
    QCOMPARE(helpOf("Reason")->textFormat(), Qt::PlainText);

    set("Entity=kept;Count=3;Rate=99.5;Mode=Third;Registers 2=Read,Read & write");
    const auto earlier = values();
    close();
    QCOMPARE(QSettings().value("IP/Test/THING/Mode").toInt(), 2);
    open(makePage(description));
    QCOMPARE(values(), earlier);
    QCOMPARE(cells(2).mid(0, 2), (QStringList{"0||Read|0.5", "1||Read & write|0.5"}));
    press("Reset");
    QCOMPARE(values()["Rate"], QStringLiteral("100.0"));
}

void DescribedTest::scriptReceivesValues() {
    openFilled(returnsRegisters);
    set("Count=2;Mode=Second;Registers 1=a\"b\\c'd,é;Registers 2=Read,Read & write;Registers 3=7,0.25");
    QCOMPARE(statement(),
             QStringLiteral(R"(argDict = {  '%%REGISTERS%%': '[("a\\"b\\\\c\'d", "r\\"o\\\\", 7.0), )"
                            R"(("é", "rw", 0.25)]', '%%ENTITY_NAME%%': 'thing', '%%COUNT%%': '2', )"
                            R"('%%RATE%%': '100.0', '%%REASON%%': '', '%%MODE%%': '\\', )"
                            R"('%%WIDTH%%': '6', '%%LIST%%': '(x"01", x"fe")', '%%NAMES%%': '[("",), ("",)]', )"
                            R"('%%APPLICATION%%': 'Velmora', '%%DATE%%': 'DATE'})"));
    set("Reason=why");
    QCOMPARE(generate(), (QStringList{"Generating thing", "  Generating done"}));
    QCOMPARE(readFile(_dialog.answer),
             QByteArray("[('a\"b\\\\c\\'d', 'r\"o\\\\', 7.0), ('\\xc3\\xa9', 'rw', 0.25)]\n"));
    set("Count=1;Names 1=x");
    QVERIFY(statement().contains("'%%NAMES%%': '[(\"x\",)]'"));
    set("Count=0");
    QVERIFY(statement().contains("'%%REGISTERS%%': '[]'"));
}

void DescribedTest::checksComeInOrder_data() {
    const TestTable<QString, QByteArray, QStringList, QStringList> table("values", "check", "lines", "keys");
    const auto check = [](const QByteArray& result) { return "def check(argDict):\n  " + result + "\n" + echo; };
    table.row("the cell before the entity", "Registers 1=;Entity=", echo, {"E:   No name!"}, {"Registers/0"});
    table.row("the entity before the script", "Entity=", check("return [('m', [])]"), {"E:   No entity!"}, {"Entity"});
    table.row("an empty list", "List= , ", echo, {"E:   No list!"}, {"List"});
    table.row("the script's first", "", check("return [('One', ['Count', 'Registers/0/Share']), ('Two', ['Mode'])]"),
              {"E:   One"}, {"Count", "Registers/0"});
    table.row("a table, keys that are none", "",
              check("return [('All', ['Registers', 'registers', 'Registers/1/Name', 'Count/0/Name'])]"),
              {"R:   The script names 'registers', which is no key of the form",
               "R:   The script names 'Registers/1/Name', which is no key of the form",
               "R:   The script names 'Count/0/Name', which is no key of the form", "E:   All"},
              {"Registers"});
    table.row("another type", "", check("return 'no'"),
              {"E:   Processing aborted ['check' should return a list of (message, [keys]), each of them as str]"}, {});
    table.row("an error of its own", "", check("printError('Rate is wrong'); return []"), {"E:   Rate is wrong"},
              {"Rate"});
    table.row("a character that cannot be passed", "Entity=it's", echo,
              {"E:   Processing aborted [Unsupported character in value] (key: %%ENTITY_NAME%%, value: it's)"},
              {"Entity"});
    table.row("such a cell", "Registers 1=a\tb", echo,
              {"E:   Processing aborted [Unsupported character in value] (key: %%REGISTERS%%, value: a\tb)"},
              {"Registers/0"});
}

void DescribedTest::checksComeInOrder() {
    QFETCH(QString, values);
    QFETCH(QByteArray, check);
    QFETCH(QStringList, lines);
    QFETCH(QStringList, keys);
    openFilled(check);
    set(values);
    QCOMPARE(generate(), QStringList("Generating thing") + lines + QStringList("  Generating failed"));
    QCOMPARE(page().getForm()->getMark().getKeys(), keys);
    QVERIFY(!QFile::exists(_dialog.answer)); // nothing is opened before
}

void DescribedTest::rowsFollowTheirChoice() {
    openFilled();
    const QWidget* reason = editor<QLineEdit>("Reason");
    QVERIFY(!reason->isEnabledTo(&page()) && check()); // it may be empty then
    for (const char* mode : {"Mode=Second", "Mode=Third"}) {
        set(mode);
        QVERIFY(reason->isEnabledTo(&page()) && !check());
    }
    set("Mode=First;List=99");
    ConsoleRecorder recorder;
    QVERIFY(!reason->isEnabledTo(&page()) && check());
    QCOMPARE(recorder.lines().size(), 1);
    QVERIFY2(recorder.lines().first().contains("99 is beyond 'Width' 6"), "the width of a coefficient is not remarked");
}

void DescribedTest::filesGoToADirectory() {
    openFilled("def generate(argDict):\n  return {'a/b.vhd': argDict['%%MODE%%']}\n",
               QByteArray(description).replace("\"file\"", "\"files\""));
    _dialog.answer = _prefix->path("out");
    QCOMPARE(generate(), (QStringList{"Generating thing", "  Generating done"}));
    QCOMPARE(readFile(_prefix->path("out/a/b.vhd")), QByteArray("'1'\n"));
}

void DescribedTest::wrongFormIsToldWhenItIsNeeded() {
    ConsoleRecorder recorder;
    const auto wrong = makePage(QByteArray(description).replace("\"Width\", \"kind\"", "\"Width\", \"kin\""));
    QCOMPARE(recorder.lines(), QStringList());
    for (int time = 0; time < 2; ++time) {
        wrong->show();
        wrong->hide();
        QVERIFY(!wrong->getForm());
    }
    QCOMPARE(recorder.lines().size(), 1);
    const QString error = recorder.lines().first();
    QVERIFY2(error.contains("Member 'kind' of the row 'Width' is missing") &&
                 error.contains("Test/thing/form.json, line: 17"),
             qPrintable(error));
    QCOMPARE(wrong->findChild<QSplitter*>()->count(), 1);

    _prefix->addKnownIP("Scope", echo, "uid UID\n");
    const auto filled = makePage(description);
    filled->setConfigurationWidget(new QWidget); // somebody else's form
    filled->show();
    QVERIFY(!filled->getForm());

    _prefix->write("share/velmora/Orvane/Scope/form.json", "{"); // of an IP that the program knows
    open("Scope");
    QVERIFY(editor<QWidget>("CaptureDepth"));
    QCOMPARE(recorder.lines().size(), 1);
}

void DescribedTest::windowReadsTheFormsThatItNeeds() {
    openFilled();
    const QByteArray configuration = QByteArray::fromStdString(page().getConfiguration().getContent());
    close();
    QSettings().clear();
    for (const QByteArray& uid : {QByteArray("ONE"), QByteArray("TWO"), QByteArray("THREE")}) {
        const QByteArray lines = "name " + uid + "\ncategory C\nuid " + uid + "\ncompany Test\nvariants V\nscript s\n";
        _prefix->write("share/velmora/Test/" + uid + "/form.json", "[]");
        _prefix->addIP("Test/" + uid, lines);
    }
    ConsoleRecorder recorder;
    const Velmora::MainWindow window;
    const auto errorCount = recorder.take().size();
    QVERIFY2(errorCount <= 1, "more forms were read than that of the page that is shown");
    auto* menu = window.findChild<Velmora::FileMenu*>();
    menu->open({_prefix->write("a.velmora", configuration)});
    QCOMPARE(recorder.take(), QStringList{"Configuration loaded from " + _prefix->path("a.velmora")});
    const Velmora::IPLeaf* shown = window.findChild<Velmora::Folio*>()->getShownIP();
    QCOMPARE(QByteArray::fromStdString(shown->getConfiguration().getContent()), configuration);
    menu->open(
        {_prefix->write("b.velmora", QByteArray(configuration).replace("Thing", "ONE").replace("THING", "ONE"))});
    QVERIFY(recorder.lines().last().startsWith("E: No installed IP with a form is 'ONE' of Test"));
    QCOMPARE(window.findChild<Velmora::Folio*>()->getShownIP(), shown);
}

VELMORA_TEST_MAIN(DescribedTest)
#include "tst_described.moc"
