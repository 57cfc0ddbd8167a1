#include <support/Examples.h>
#include <support/FormFixture.h>
#include <support/TestMain.h>
#include <support/TestTable.h>

#include <velmora/ips/serdes/SERDESLeaf.h>
#include <velmora/tables/LineTableView.h>

#include <Brindle/core/Exception.h>

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSettings>
#include <QSpinBox>
#include <QTextEdit>

using FormText::parse;
using FormText::Values;

namespace {

const QStringList streamingFilters{"Systolic", "Transpose", "Transpose dual", "Transpose symmetric"};

/// What the check of a form asks for, beside the reset values; as FormText writes it.
QString goodValues(const QString& ip) {
    if (ip == "SER/DES")
        return "Entity=link;Prefix=lk;SER/TrainingValue=101;DES/TrainingValue=010;LocationTableView/SER 1=01P;"
               "LocationTableView/DES 1=01N";
    return ip.contains("Scope") ? "Entity=la" : "Entity=fir;Coefficients=1,2,3,4";
}

/// What is marked in a form: the names of widgets, and of tables with the row and column of a cell.
QStringList marksOf(const QWidget& form) {
    QStringList marks;
    for (const QWidget* widget : form.findChildren<QWidget*>()) {
        if (widget->property("refused").toBool())
            marks += widget->objectName();
    }
    for (const auto* table : form.findChildren<Velmora::LineTableView*>()) {
        const Velmora::LineTableModel& model = *table->getModel();
        for (int row = 0; row < model.rowCount(); ++row) {
            for (int column = 0; column < model.columnCount(); ++column) {
                if (model.index(row, column).data(Velmora::LineTableModel::ProblemRole).isValid())
                    marks += QString("%1 %2,%3").arg(table->objectName()).arg(row).arg(column);
            }
        }
    }
    marks.sort();
    return marks;
}

/// As many coefficients.
QString list(int count) {
    return "Coefficients=" + QStringList(QVector<QString>(count, "1").toList()).join(',');
}

} // namespace

/// What the forms have in common: values that are reset and kept, checks, refused arguments, generation.
class FormsTest : public QObject, private FormFixture {
    Q_OBJECT

private:
    QString content() const { return QString::fromStdString(page().getConfiguration().getContent()); }
    void changeMarked(const QString& mark) const;

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void resetReachesHiddenRowsAndCanBeTakenBack();
    void valuesAreStored();
    void absentValues();
    void everyStoredValueOpens_data() { Examples::addRows(); }
    void everyStoredValueOpens();
    void coefficientModeEnables();
    void captureModeEnables();
    void checks_data();
    void checks();
    void generates();
    void goWithTheirPages_data() { Examples::addRows(); }
    void goWithTheirPages();
    void refusedArguments_data();
    void refusedArguments();
    void scriptErrorsNameTheForm_data() { Examples::addRows(); }
    void scriptErrorsNameTheForm();
    void bytesOfTheScriptStay();
    void coefficientsOutOfRange();
    void wrongDate();
};

void FormsTest::resetReachesHiddenRowsAndCanBeTakenBack() {
    const auto configuration = openFor("serdes_link");
    const QStringList initial = cells();
    page().setConfiguration(configuration);
    set("SERCount=1;DESCount=0");
    const auto filled = std::pair(content(), cells());
    press("Reset");
    QCOMPARE(cells(), initial);
    QVERIFY(editor<QLineEdit>("Entity")->isUndoAvailable());
    QVERIFY(!QSettings().contains("SERDESLeaf/Entity")); // until the form goes

    Velmora::FormHistory& history = page().getForm()->getHistory();
    QCOMPARE(history.undoText(), "Reset");
    set("Entity=later");
    const QString edited = content();
    history.undo();
    QCOMPARE(std::pair(content(), cells()), filled);
    history.redo();
    QCOMPARE(content(), edited); // and not as the reset left it
    QCOMPARE(cells(), initial);

    openFilled("fir_mac");
    auto* list = editor<QTextEdit>("Coefficients");
    const QString coefficients = list->toPlainText();
    press("Reset");
    list->undo();
    QCOMPARE(list->toPlainText(), coefficients);
    openFor("fir_mac"); // the list is what the page begins with
    QVERIFY(!coefficients.isEmpty() && !editor<QTextEdit>("Coefficients")->document()->isUndoAvailable());
    QVERIFY(!page().getForm()->getHistory().canUndo());
}

/// A choice by its index, a pad type by its place in their catalogue, a row of a table as a list of its cells.
void FormsTest::valuesAreStored() {
    openFilled("serdes_link");
    const QStringList filled = cells();
    const QString before = content();
    const int padType = editor<QComboBox>("DES/PadType")->currentIndex();
    openFor("serdes_link");
    QCOMPARE(content(), before);
    QCOMPARE(cells(), filled);
    QSettings settings;
    settings.beginGroup("SERDESLeaf");
    QCOMPARE(settings.value("BankNumber").toString(), "2");
    QCOMPARE(settings.value("DES/PadType").toString(), QString::number(padType));
    QCOMPARE(settings.value("LocationTableView/SER/1").toStringList(), QStringList({"SER1", "02P", "12"}));
}

/// They are empty in the forms without sections and change nothing in the others, pad types apart.
void FormsTest::absentValues() {
    openFor("fir_mac");
    const QString first = content();
    page().setConfiguration(Examples::configuration("fir_mac"));
    page().getForm()->load();
    QCOMPARE(content(), first);
    openFilled("serdes_link");
    set("SER/PadType=LVCMOS_1.8V");
    const QString before = content();
    editor<Velmora::SERDESLeaf>("SERDESLeaf")->load();
    QCOMPARE(content(), QString(before).replace("SER/PadType = LVCMOS_1.8V", "SER/PadType = LVDS_2.5V"));
}

void FormsTest::everyStoredValueOpens() {
    QFETCH(QString, example);
    openFor(example);
    const Values first = values();
    const QStringList initial = cells();
    openFor(example); // which stores the values of the one before
    const QStringList keys = QSettings().allKeys().filter(QRegularExpression("^" + group() + "/"));
    QVERIFY(keys.size() >= first.size());
    for (const QVariant& rubbish :
         {QVariant(QStringList{"a", "b", "c", "d"}), QVariant("seven"), QVariant(-5), QVariant(1000000),
          QVariant(QByteArray("a\0\xff", 3).repeated(1000)), QVariant("3000000000"), QVariant("4294967297"),
          QVariant("nan"), QVariant(QVariantMap{{"a", 1}})}) {
        close();
        {
            QSettings settings;
            for (const QString& key : keys)
                settings.setValue(key, rubbish);
        }
        openFor(example);
        const auto* slope = editor<QDoubleSpinBox>("DES/InputSignalSlope");
        QVERIFY(!slope || (slope->value() >= 0.5 && slope->value() <= 20));
        const bool isText = rubbish.type() == QVariant::String || rubbish.type() == QVariant::Int;
        for (const QString& name : first.keys()) {
            if (editor<QComboBox>(name) || (!isText && editor<QLineEdit>(name)))
                QCOMPARE(values()[name], first[name]);
        }
        QStringList expected = initial;
        if (rubbish.type() == QVariant::StringList)
            expected.replaceInStrings(QRegularExpression("^((Trig)?\\d+\\|)\\|"), "\\1b|"); // a free text
        QCOMPARE(cells(), expected);
    }
}

void FormsTest::coefficientModeEnables() {
    const auto enabled = [this] {
        return QString("%1 %2")
            .arg(editor<QWidget>("CoefficientCount")->isEnabled())
            .arg(editor<QWidget>("Coefficients")->isEnabled());
    };
    const auto help = [this](const char* name) { return page().getForm()->getHelp(editor<QWidget>(name))->text(); };
    open("Systolic");
    set("Coefficients=1, 2, 3");
    QCOMPARE(enabled(), "0 1");
    set("CoefficientMode=Input");
    QCOMPARE(enabled(), "1 0");
    QCOMPARE(editor<QTextEdit>("Coefficients")->toPlainText(), "1, 2, 3");
    QCOMPARE(help("Coefficients"), "Not available when coefficients are inputs.");
    QCOMPARE(help("CoefficientCount"), "Range 3 to 56.");
    open("Systolic"); // the stored mode has the same effect
    QCOMPARE(enabled(), "1 0");
    set("CoefficientMode=Constant");
    QCOMPARE(enabled(), "0 1");
    QCOMPARE(help("CoefficientCount"), "Deduced from the amount of coefficients specified.");
    bool invoked = false;
    QVERIFY_EXCEPTION_THROWN(
        invoked = QMetaObject::invokeMethod(form(), "onCoefficientModeChange", Q_ARG(QString, "Both")), Brindle::Fatal);
    QVERIFY(!invoked);
}

void FormsTest::captureModeEnables() {
    open("Scope");
    const auto disabled = [this] {
        QStringList names;
        for (const QString& name : values().keys()) {
            if (!editor<QWidget>(name)->isEnabled())
                names += name;
        }
        return names.join(',');
    };
    const QString inPreTrigger = "StoreWindow,WindowCaptureLength";
    QCOMPARE(disabled(), inPreTrigger);
    set("CaptureMode=Multiple windows;PreTriggerSamples=7");
    QCOMPARE(disabled(), "PreTriggerSamples");
    QVERIFY(statement().contains("'%%PRE_TRIGGER_SAMPLES%%': '7'"));
    open("Scope");
    QCOMPARE(disabled(), "PreTriggerSamples");
    press("Reset");
    QCOMPARE(disabled(), inPreTrigger);
}

void FormsTest::checks_data() {
    const TestTable<QString, QString, QString, QStringList> table("ip", "values", "message", "marked");
    const auto refuse = [&table](const QString& ip, const QString& values, const char* message,
                                 const QStringList& marked) {
        table.row(qPrintable(ip + ": " + values.left(60) + ": " + message), ip, values, message, marked);
    };
    const auto pass = [&refuse](const QString& ip, const QString& values) { refuse(ip, values, "", {}); };
    const char* noEntity = "Entity name not specified!";
    const char* noCoefficients = "Coefficients not defined!";
    const char* tooWide = "'Input Data width' or 'Coefficient width' should be 18 bit or less.";
    const char* tooLong = "'LSB To Be Truncated' + 'Output Data width' should be inferior to 50.";
    const char* count = "Coefficient count should be between 3 and 56.";
    const char* odd = "For a symmetric filter, coefficient count should be odd.";
    const QStringList lengths{"OutputDataWidth", "ToBeTruncated"};
    const QStringList widths{"CoefficientWidth", "InputDataWidth"};

    refuse("Mac fir", "Entity=;OutputDataWidth=16;ToBeTruncated=35;ClkAux1Pattern=2", noEntity, {"Entity"});
    refuse("Mac fir", "Coefficients= ,\n;OutputDataWidth=16;ToBeTruncated=35", noCoefficients, {"Coefficients"});
    refuse("Mac fir", list(1) + ";OutputDataWidth=16;ToBeTruncated=35", tooLong, lengths);
    pass("Mac fir", list(3) + ";OutputDataWidth=16;ToBeTruncated=34");
    refuse("Mac fir", list(2) + ";ClkAux1Pattern=2", "Coefficient count should be greater than 2.", {"Coefficients"});
    pass("Mac fir", list(3) + ";ClkAux1Pattern=1010101010101010");
    for (const char* pattern : {"10101010101010101", "101010101010101", "1010101010101012", "101010101010101 "}) {
        refuse("Mac fir", QString("ClkAux1Pattern=%1;").arg(pattern) + list(3), "Invalid auxiliary clock pattern.",
               {"ClkAux1Pattern"});
    }
    for (const QString& ip : streamingFilters)
        refuse(ip, list(2), count, {"Coefficients"});
    refuse("Systolic", "Entity=", noEntity, {"Entity"});
    refuse("Systolic", "Coefficients=;OutputDataWidth=50;ToBeTruncated=1", noCoefficients, {"Coefficients"});
    refuse("Systolic", list(1) + ";OutputDataWidth=50;ToBeTruncated=1", tooLong, lengths);
    pass("Systolic", list(3) + ";OutputDataWidth=14;ToBeTruncated=36");
    refuse("Systolic", list(57), count, {"Coefficients"});
    pass("Systolic", list(56));
    pass("Systolic", list(4) + ";InputDataWidth=18;CoefficientWidth=24");
    pass("Systolic", "Coefficients=;CoefficientMode=Input;CoefficientCount=7");
    refuse("Transpose symmetric", list(3), odd, {"Coefficients"});
    refuse("Transpose symmetric", "CoefficientMode=Input;CoefficientCount=7", odd, {"CoefficientCount"});
    pass("Transpose symmetric", list(4));
    refuse("Transpose", list(1) + ";InputDataWidth=20;CoefficientWidth=20;OutputDataWidth=50;ToBeTruncated=1", tooWide,
           widths);
    refuse("Transpose", list(3) + ";InputDataWidth=19;CoefficientWidth=19", tooWide, widths);
    pass("Transpose", list(3) + ";InputDataWidth=24;CoefficientWidth=18");

    const QString pads = getPads().join(',');
    const QString ser = ";LocationTableView/SER 1=";
    const QString des = ";LocationTableView/DES 1=";
    const QString noTraining = ";SER/TrainingValue=;DES/TrainingValue=";
    const QString wrong = "SERCount=16;DESCount=15;DES/PadType=LVDS_3.3V" + noTraining;
    const char* voltages = "Pad type of SER and DES must have the same voltage!";
    const QStringList padTypeEdits{"DES/PadType", "SER/PadType"};
    const auto clash = [&refuse](const QString& values, const QString& location, const QString& marks) {
        refuse(
            "SER/DES", values, qPrintable(location + " is already used!"),
            QString(marks).replace("SER", "LocationTableView/SER").replace("DES", "LocationTableView/DES").split(';'));
    };
    pass("SER/DES", "SERCount=1");
    refuse("SER/DES", wrong + ";Entity=;Prefix=", noEntity, {"Entity"});
    refuse("SER/DES", wrong + ";Prefix=", "Parameter's prefix not specified!", {"Prefix"});
    refuse("SER/DES", wrong, "SER count + DES count must be less than 30.", {"DESCount", "SERCount"});
    pass("SER/DES", "SERCount=15;DESCount=15" + ser + pads.left(59) + des + pads.mid(60));
    pass("SER/DES", "SERCount=30;DESCount=0" + ser + pads);
    refuse("SER/DES", "DES/PadType=LVDS_3.3V" + noTraining, voltages, padTypeEdits);
    pass("SER/DES", "SER/PadType=SSTL_1.8V_II;DES/PadType=LVCMOS_1.8V");
    refuse("SER/DES", "SER/PadType=BARE", voltages, padTypeEdits);
    pass("SER/DES", "SER/PadType=BARE;DES/PadType=NAKED");
    refuse("SER/DES", noTraining, "SER training value must have the length specified in data size!",
           {"SER/TrainingValue"});
    refuse("SER/DES", "DES/TrainingValue=0101", "DES training value must have the length specified in data size!",
           {"DES/TrainingValue"});
    pass("SER/DES", "DataSize=4;SER/TrainingValue=1010;DES/TrainingValue=wxyz");
    clash("SERCount=2" + ser + ",", "SER location ''", "SER 0,1;SER 1,1");
    clash(ser + des, "DES location ''", "DES 0,1;SER 0,1");
    clash("SERCount=4" + ser + "01P,02P,02P,01P" + des + "01P", "SER location '02P'", "SER 1,1;SER 2,1");
    clash("DESCount=2" + des + "03P,01P", "DES location '01P'", "DES 1,1;SER 0,1");
    clash("DESCount=2" + des + "03P,03P", "DES location '03P'", "DES 0,1;DES 1,1");
    pass("SER/DES", ser + "01P,01P" + des + "01N,01P"); // hidden rows do not count
    for (const char* ip : {"Scope", "Startup Scope"}) {
        refuse(ip, "Entity=", noEntity, {"Entity"});
        pass(ip, "Entity=la");
    }
}

/// Makes the field or cell another one.
void FormsTest::changeMarked(const QString& mark) const {
    if (const auto* table = editor<Velmora::LineTableView>(mark.section(' ', 0, 0))) {
        const QStringList place = mark.section(' ', 1).split(',');
        table->getModel()->item(place.at(0).toInt(), place.at(1).toInt())->setText("09P");
    } else if (auto* combo = editor<QComboBox>(mark)) {
        combo->setCurrentIndex(combo->currentIndex() == 0 ? 1 : 0);
    } else if (auto* spin = editor<QSpinBox>(mark)) {
        spin->setValue(spin->value() == spin->maximum() ? spin->minimum() : spin->maximum());
    } else {
        set({{mark, "x"}});
    }
}

/// The first thing that is wrong is told and marked, until the user changes what is marked or the values are replaced.
void FormsTest::checks() {
    QFETCH(QString, ip);
    QFETCH(QString, values);
    QFETCH(QString, message);
    QFETCH(QStringList, marked);
    open(ip);
    for (const char* padType : {"SER/PadType", "DES/PadType"}) {
        if (auto* combo = editor<QComboBox>(padType))
            combo->addItems({"BARE", "NAKED"});
    }
    const Velmora::Configuration blank = page().getConfiguration();
    const auto verify = [&] {
        set(parse(values, parse(goodValues(ip))));
        ConsoleRecorder recorder;
        const bool passed = check();
        QCOMPARE(recorder.errors(), message.isEmpty() ? QStringList() : QStringList("E: " + message));
        QCOMPARE(passed, message.isEmpty());
        QCOMPARE(marksOf(*form()), marked);
    };
    verify();
    if (marked.isEmpty())
        return;
    const auto* first = editor<QWidget>(marked.first());
    if (const auto* table = editor<Velmora::LineTableView>(marked.first().section(' ', 0, 0))) {
        const int column = marked.first().section(',', -1).toInt();
        table->getModel()->item(0, column == 0 ? 1 : 0)->setText("5"); // another cell
        QCOMPARE(marksOf(*form()), marked);
    }
    QCOMPARE(first ? first->accessibleDescription() : message, message);
    changeMarked(marked.first());
    QCOMPARE(marksOf(*form()), QStringList());
    QCOMPARE(first ? first->accessibleDescription() : QString(), QString());
    verify();
    press("Reset");
    QCOMPARE(marksOf(*form()), QStringList());
    verify();
    page().setConfiguration(blank);
    QCOMPARE(marksOf(*form()), QStringList());
}

void FormsTest::generates() {
    const QString answer = std::exchange(_dialog.answer, QString());
    openFilled("fir_systolic");
    QCOMPARE(generate(), QStringList()); // cancelled
    QVERIFY(QSettings().childGroups().isEmpty());

    _dialog.answer = answer;
    const QString title = "Generating systolic filter";
    QCOMPARE(generate(), QStringList({title, "  Generating done"}));
    QCOMPARE(_dialog.asked,
             QStringList({"Choose a file name", QDir::currentPath() + "/fir_systolic.vhd", "VHDL (*.vhd)"}));
    const QByteArray output = readFile(answer);
    QVERIFY(output.contains("%%ENTITY_NAME%%=fir_systolic\n") && output.endsWith("\n"));
    QCOMPARE(QSettings().value("SystolicLeaf/Filepath").toString(), answer);
    QCOMPARE(QSettings().value("SystolicLeaf/Entity").toString(), "fir_systolic");

    set("Entity=");
    QCOMPARE(generate(), QStringList({title, "E:   Entity name not specified!", "  Generating failed"}));
    QCOMPARE(_dialog.asked.at(1), answer);
    QCOMPARE(readFile(answer), output); // the old file stays

    openFilled("fir_systolic", "raise ValueError('x')");
    const QStringList lines = generate();
    QCOMPARE(lines.mid(lines.size() - 2), // behind the trace
             QStringList({"E:   Processing aborted [Should not be here]", "  Generating failed"}));
    QCOMPARE(readFile(answer), QByteArray());
}

/// Also the forms that no window shows.
void FormsTest::goWithTheirPages() {
    QFETCH(QString, example);
    const auto name = QString::fromStdString(Examples::configuration(example).getName());
    const std::string description = _prefix->addKnownIP(name, echo).toStdString();
    QVERIFY(Velmora::IPLeaf(description, Velmora::IPLeaf::Content::FormOnly).getForm());
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());
}

void FormsTest::refusedArguments_data() {
    const TestTable<QString, QString, QString> table("example", "values", "told");
    const auto row = [&table](const QString& example, const QString& values, const QString& told) {
        table.row(qPrintable(example + ": " + values), example, values, told);
    };
    const QString character = "Unsupported character in value] (key: %%%1%%, value: %2)";
    for (const QString& example : Examples::names()) {
        if (example != "spi_bridge") // which wraps no error
            row(example, "Entity=x'y", QString(character).replace("%1%", "ENTITY_NAME%").replace("%2", "x'y"));
    }
    for (const char* filter : {"fir_mac", "fir_systolic"})
        row(filter, "Coefficients=1,2,3,0x1F", "Invalid coefficient] (coefficient: 0x1F)");
    row("serdes_link", "Prefix=l\\k", QString(character).replace("%1%", "PREFIX%").replace("%2", "l\\k"));
    row("serdes_link", "DES/TrainingValue=1'01",
        QString(character).replace("%1%", "SER_TRAINING_VALUE%").replace("%2", "\"1'01\""));
    row("scope_bus", "TriggerTableView 2=0,Rising edge;TriggerCount=2;TriggerMode=Basic",
        "Unsupported value in basic trigger mode] (input: Trig1, value: Rising edge)");
    row("scope_bus", "TriggerTableView 2=both;TriggerMode=Basic & Edges", "Should not be here]");
}

/// The script gets nothing that could run as code; the error tells the form.
void FormsTest::refusedArguments() {
    QFETCH(QString, example);
    QFETCH(QString, values);
    QFETCH(QString, told);
    openFilled(example);
    set(values);
    const QStringList filled = cells();
    _prefix->write("out.vhd", "old");
    QCOMPARE(generate().mid(1, 1), QStringList("E:   Processing aborted [" + told));
    const bool isRefusedBefore =
        form()->objectName() == "DescribedLeaf"; // by the check, which the script has a part in
    QCOMPARE(readFile(_dialog.answer), QByteArray(isRefusedBefore ? "old" : ""));
    QCOMPARE(cells(), filled);
    try {
        statement();
        QFAIL("nothing thrown");
    } catch (const Brindle::Error& error) {
        QCOMPARE(error.getLocation().file, "src/bin/velmora/" + form()->objectName().toStdString());
    }
}

void FormsTest::scriptErrorsNameTheForm() {
    QFETCH(QString, example);
    openFilled(example, "raise ValueError('x')");
    try {
        std::visit([](const auto& script) { script(); }, page().getGeneration().script);
        QFAIL("nothing thrown");
    } catch (const Brindle::Fatal& error) {
        QCOMPARE(error.what(), "Should not be here");
        QCOMPARE(error.getLocation().file, "src/bin/velmora/" + form()->objectName().toStdString());
    }
}

/// As far as NUL, in the file that the window writes.
void FormsTest::bytesOfTheScriptStay() {
    open("Systolic", returning("argDict['%%COEFS_PKG_HEXA_CONSTANT%%'] + '\\xe9\\xff\\r\\0b'"));
    set("Entity=fir;CoefficientMode=Input");
    QCOMPARE(generate().last(), "  Generating done");
    QCOMPARE(readFile(_dialog.answer), "(others => (others => '0'))\xe9\xff\r\n");
}

void FormsTest::coefficientsOutOfRange() {
    open("Systolic");
    set("Entity=fir;CoefficientWidth=8;Coefficients=200, 127, -128, x\"f1\", -129");
    QCOMPARE(generate().mid(1, 3),
             QStringList({"R:   Coefficient 200 is beyond 'Coefficient width' 8, which holds -128 to 127",
                          "R:   Coefficient -129 is beyond 'Coefficient width' 8, which holds -128 to 127",
                          "  Generating done"}));
    set("CoefficientMode=Input");
    QCOMPARE(generate().value(1), "  Generating done");
}

/// It is told before the earlier output is emptied.
void FormsTest::wrongDate() {
    open("Systolic");
    set("Entity=fir;Coefficients=1, 2, 3");
    _prefix->write("out.vhd", "earlier");
    qputenv("SOURCE_DATE_EPOCH", "soon");
    const QStringList lines = generate();
    qunsetenv("SOURCE_DATE_EPOCH");
    QVERIFY(lines.value(1).startsWith("E:   Processing aborted [SOURCE_DATE_EPOCH should be "));
    QCOMPARE(readFile("out.vhd"), "earlier");
}

VELMORA_TEST_MAIN(FormsTest)
#include "tst_forms.moc"
