#include <support/ConsoleRecorder.h>
#include <support/Contrast.h>
#include <support/FormText.h>
#include <support/PathDialogs.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/FoldWidget.h>
#include <velmora/HelpLabel.h>
#include <velmora/IPLeaf.h>
#include <velmora/LocationTableView.h>
#include <velmora/SERDESLeaf.h>
#include <velmora/StyleSheetPause.h>

#include <Brindle/Build.h>
#include <Brindle/Exception.h>
#include <Brindle/Theme.h>
#include <Quillon/PadType.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QHeaderView>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>

#include <algorithm>
#include <memory>

using FormText::parse;
using FormText::Values;
using Velmora::LocationTableView;

namespace {

const QByteArray echo = "def generate(argDict):\n"
                        "  return '\\n'.join(key + '=' + argDict[key] for key in sorted(argDict))\n";

const Values resetValues =
    parse("Entity=;Prefix=;WordClock=20;DataSize=3;SERCount=1;DESCount=1;BankNumber=02;SER/PadType=LVDS_2.5V;"
          "SER/Differential=True;SER/SlewRate=Fast;SER/OutputCapacity=0;SER/TrainingValue=;DES/PadType=LVDS_2.5V;"
          "DES/Differential=True;DES/Termination=100;DES/TerminationReference=VT;DES/Turbo=False;"
          "DES/InputSignalSlope=0.5;DES/TrainingValue=");
/// Others for every field, no number at an end of its range.
const Values otherValues =
    parse("Entity=link;Prefix=lk;WordClock=125;DataSize=4;SERCount=2;DESCount=3;BankNumber=10;SER/PadType=SSTL_1.8V_II;"
          "SER/Differential=False;SER/SlewRate=Medium;SER/OutputCapacity=12;SER/TrainingValue=1010;"
          "DES/PadType=LVCMOS_1.8V;DES/Differential=False;DES/Termination=50;DES/TerminationReference=Floating;"
          "DES/Turbo=True;DES/InputSignalSlope=7.5;DES/TrainingValue=0101");

/// Every pad of a bank, "01P" first.
QStringList getPads() {
    QStringList pads;
    for (int pad = 0; pad < 30; ++pad)
        pads += QStringLiteral("%1%2").arg(pad / 2 + 1, 2, 10, QChar('0')).arg(pad % 2 ? "N" : "P");
    return pads;
}

/// Types a text where the focus is, its first character into the table, and ends it with a key.
void type(const QString& text, Qt::Key end) {
    QTest::keyClicks(QApplication::focusWidget(), text.left(1));
    QTest::keyClicks(QApplication::focusWidget(), text.mid(1));
    QTest::keyClick(QApplication::focusWidget(), end);
}

} // namespace

/// The form of the SER/DES and its tables.
class SerdesTest : public QObject {
    Q_OBJECT

private:
    void open(const QByteArray& script = echo);
    Velmora::SERDESLeaf* form() const { return _page->findChild<Velmora::SERDESLeaf*>("SERDESLeaf"); }
    template <class Editor>
    Editor* editor(const QString& key) const {
        return form()->findChild<Editor*>(key);
    }
    LocationTableView* table(const char* mode) const {
        return editor<LocationTableView>(QStringLiteral("LocationTableView/%1").arg(mode));
    }
    LocationTableView* showTable(const char* mode);
    void set(const Values& values) const;
    void set(const char* values) const { set(parse(values)); }
    Values values() const { return FormText::read(form(), resetValues.keys()); }
    /// Puts texts, separated by commas, into a column of a table, from the first row on.
    void fill(const char* mode, int column, const QString& texts) const;
    QString locations(const char* mode) const { return table(mode)->getLocationList().join(','); }
    QString delays() const { return table("SER")->getOutputDelayList().join(','); }
    void press(const char* button) const { QTest::mousePress(editor<QPushButton>(button), Qt::LeftButton); }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<Velmora::IPLeaf> _page;
    PathDialogs _dialog;

private Q_SLOTS:
    void init();
    void cleanup();

    void rows();
    void resetLeavesTrainingValues();
    void valuesAreKept();
    void absentValuesChangeNothing();
    void everyStoredValueOpens();
    void tableTakesWhatCouldBeEntered();
    void countsHideRows();
    void checks_data();
    void checks();
    void statement();
    void linesArePlacedByKeyboard();
    void tabGoesThroughCells();
    void linesArePlacedByMouse();
    void editors();
    void tabLeavesTheTable();
    void openSectionIsLegible();
    void generates();
    void argumentErrorsTellTheForm();
    void refusals_data();
    void refusals();
};

void SerdesTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _dialog.answer = _prefix->path("out.vhd");
    _dialog.asked.clear();
    QSettings().setValue("animations", "Never");
    open();
}

void SerdesTest::cleanup() {
    _page.reset();
    _prefix.reset();
}

void SerdesTest::open(const QByteArray& script) {
    _page.reset();
    _prefix->writeScript("share/velmora/Orvane/serdes/generator.py", script);
    _page = std::make_unique<Velmora::IPLeaf>(
        _prefix
            ->addIP("Orvane/serdes",
                    "name SER/DES\ncategory Interface\nuid SERDES\ncompany Orvane\nvariants V\nscript generator.py\n")
            .toStdString());
}

/// The table with its section open, in an active window and with its first location current.
LocationTableView* SerdesTest::showTable(const char* mode) {
    LocationTableView* view = table(mode);
    _page->resize(800, 900);
    _page->show();
    _page->activateWindow();
    if (!QTest::qWaitForWindowActive(_page.get()))
        qFatal("the window does not become active");
    for (const auto* section : form()->findChildren<Velmora::FoldWidget*>()) {
        if (section->isAncestorOf(view))
            QTest::mouseClick(section->findChild<QToolButton*>(), Qt::LeftButton);
    }
    QCoreApplication::processEvents();
    view->setFocus();
    view->setCurrentIndex(view->model()->index(0, 1));
    return view;
}

void SerdesTest::set(const Values& values) const {
    for (auto value = values.begin(); value != values.end(); ++value) {
        auto* widget = editor<QWidget>(value.key());
        QVERIFY(widget->metaObject()->userProperty().write(widget, *value));
    }
}

void SerdesTest::fill(const char* mode, int column, const QString& texts) const {
    int row = 0;
    for (const QString& text : texts.split(','))
        table(mode)->getModel()->item(row++, column)->setText(text);
}

void SerdesTest::rows() {
    QStringList found = FormText::rowsOf(form()).mid(0, 1);
    for (const auto* section : form()->findChildren<Velmora::FoldWidget*>()) {
        found += section->findChild<QToolButton*>()->text();
        found += FormText::rowsOf(section->findChild<QComboBox*>()->parentWidget());
    }
    QStringList padTypes;
    for (const Quillon::PadType& padType : Quillon::PadType::getConcretes())
        padTypes += padType.getName();
    const QString sum = "|Range 0 to 30.\nThe sum of SER & DES must be lower or equal to 30.|0..30";
    const QStringList expected{"Entity name|Entity||",
                               "Global parameters",
                               "Parameter's prefix|Prefix||",
                               "Word clock frequency (MHz)|WordClock|Range 20 to 200MHz.|20..200",
                               "Data size|DataSize|Range 3 to 10.|3..10",
                               "SER count|SERCount" + sum,
                               "DES count|DESCount" + sum,
                               "Bank number|BankNumber||02,03,04,05,09,10,11,12",
                               "SER parameters",
                               "Pad type|SER/PadType||" + padTypes.join(','),
                               "Differential|SER/Differential||True,False",
                               "Slew rate|SER/SlewRate||Slow,Medium,Fast",
                               "Output capacity|SER/OutputCapacity||0..100",
                               "Training value|SER/TrainingValue|Length must match data size.|",
                               "none|LocationTableView/SER||",
                               "DES parameters",
                               "Pad type|DES/PadType||" + padTypes.join(','),
                               "Differential|DES/Differential||True,False",
                               "Termination|DES/Termination||0..100",
                               "Termination reference|DES/TerminationReference||VT,Floating",
                               "Turbo|DES/Turbo||True,False",
                               "Input signal slope|DES/InputSignalSlope||0.5..20",
                               "Training value|DES/TrainingValue|Length must match data size.|",
                               "none|LocationTableView/DES||"};
    QCOMPARE(found, expected);
}

void SerdesTest::resetLeavesTrainingValues() {
    QCOMPARE(values(), resetValues); // the first start
    set(otherValues);
    fill("SER", 1, "01P,01N,02P");
    fill("SER", 2, "1,2,63");
    press("Reset");
    QCOMPARE(values(), parse("SER/TrainingValue=1010;DES/TrainingValue=0101", resetValues));
    set("SERCount=3");
    QCOMPARE(locations("SER"), QStringLiteral(",,"));
    QCOMPARE(delays(), QStringLiteral("00,00,00"));
}

void SerdesTest::valuesAreKept() {
    set(otherValues);
    fill("SER", 1, "01P,,15N"); // the last one is hidden
    fill("SER", 2, "5,63,7");
    fill("DES", 1, "02P");
    open();
    QCOMPARE(values(), otherValues);
    set("SERCount=3");
    QCOMPARE(locations("SER"), QStringLiteral("01P,,15N"));
    QCOMPARE(delays(), QStringLiteral("05,63,07"));
    QCOMPARE(locations("DES"), QStringLiteral("02P,,"));

    _page.reset();
    QSettings settings;
    settings.beginGroup("SERDESLeaf");
    QCOMPARE(settings.value("BankNumber").toInt(), 5);
    QCOMPARE(settings.value("SER/SlewRate").toInt(), 1);
    QCOMPARE(settings.value("DES/InputSignalSlope").toDouble(), 7.5);
    QCOMPARE(settings.value("LocationTableView/SER/2").toStringList(), QStringList({"SER2", "15N", "7"}));
    QCOMPARE(settings.value("LocationTableView/DES/31").toStringList(), QStringList({"DES31", ""}));
    QStringList keys = settings.allKeys();
    QCOMPARE(keys.filter("LocationTableView/").size(), 64);
    for (const QString& key : resetValues.keys())
        QVERIFY2(keys.contains(key), qPrintable(key));
    QCOMPARE(keys.size(), resetValues.size() + 64);
}

void SerdesTest::absentValuesChangeNothing() {
    set(otherValues);
    fill("SER", 1, "03N");
    form()->load();
    QCOMPARE(values(), parse("SER/PadType=LVDS_2.5V;DES/PadType=LVDS_2.5V", otherValues));
    QCOMPARE(locations("SER"), QStringLiteral("03N,"));
}

void SerdesTest::everyStoredValueOpens() {
    _page.reset();
    const QStringList keys = QSettings().allKeys().filter("SERDESLeaf/");
    for (const QVariant& rubbish :
         {QVariant(QStringList{"a", "b", "c", "d"}), QVariant("seven"), QVariant(-5), QVariant(1000000),
          QVariant(QByteArray(1000, '\xff')), QVariant("3000000000"), QVariant("nan"), QVariant(QVariantMap())}) {
        {
            QSettings settings;
            for (const QString& key : keys)
                settings.setValue(key, rubbish);
        }
        open();
        QCOMPARE(editor<QComboBox>("SER/PadType")->currentText(), QStringLiteral("LVDS_2.5V"));
        QCOMPARE(editor<QComboBox>("BankNumber")->currentText(), QStringLiteral("02"));
        const double slope = editor<QDoubleSpinBox>("DES/InputSignalSlope")->value();
        QVERIFY(slope >= 0.5 && slope <= 20);
        set("SERCount=30;DESCount=30");
        for (const char* mode : {"SER", "DES"})
            QCOMPARE(locations(mode), QString(29, ','));
        QCOMPARE(delays().remove(','), QString(60, '0'));
        QCOMPARE(table("SER")->getModel()->item(7, 0)->text(), QStringLiteral("SER7"));
        _page.reset();
    }
}

void SerdesTest::tableTakesWhatCouldBeEntered() {
    fill("SER", 1, "09P,09N,10P,10N");
    const QStringList rows{"other,15N,63", "SER1,16P,64", "SER2,,07", "SER3"};
    for (int row = 0; row < rows.size(); ++row)
        QSettings().setValue(QStringLiteral("SERDESLeaf/LocationTableView/SER/%1").arg(row), rows.at(row).split(','));
    table("SER")->load();
    set("SERCount=4");
    QCOMPARE(table("SER")->getModel()->item(0, 0)->text(), QStringLiteral("SER0"));
    QCOMPARE(locations("SER"), QStringLiteral("15N,09N,,10N"));
    QCOMPARE(delays(), QStringLiteral("63,00,00,00"));
}

void SerdesTest::countsHideRows() {
    for (const char* mode : {"SER", "DES"}) {
        LocationTableView* view = table(mode);
        const QAbstractItemModelTester tester(view->model());
        fill(mode, 1, getPads().join(','));
        for (const int count : {3, 2, 0, 30, 2}) {
            set({{QString(mode) + "Count", QString::number(count)}});
            QCOMPARE(view->model()->rowCount(), count);
            QCOMPARE(view->getRowCount(), count);
            QCOMPARE(view->getLocationList(), getPads().mid(0, count));
        }
        QCOMPARE(view->getModel()->rowCount(), 32);
        QCOMPARE(view->getModel()->item(31, 0)->text(), QString(mode) + "31");
    }
}

void SerdesTest::checks_data() {
    const TestTable<QString, QString, QString, QString> table("values", "serLocations", "desLocations", "message");
    const QString noTraining = ";SER/TrainingValue=;DES/TrainingValue=";
    const QString wrong = "SERCount=16;DESCount=15;DES/PadType=LVDS_3.3V" + noTraining;
    const char* voltages = "Pad type of SER and DES must have the same voltage!";
    const QString pads = getPads().join(',');
    table.row("good", "", "01P", "01N", "");
    table.row("all wrong", wrong + ";Entity=;Prefix=", "", "", "Entity name not specified!");
    table.row("prefix", wrong + ";Prefix=", "", "", "Parameter's prefix not specified!");
    table.row("31 lines", wrong, "", "", "SER count + DES count must be less than 30.");
    table.row("30 lines", "SERCount=15;DESCount=15", pads.left(59), pads.mid(60), "");
    table.row("30 lines of one kind", "SERCount=30;DESCount=0", pads, "", "");
    table.row("voltage", "DES/PadType=LVDS_3.3V" + noTraining, "", "", voltages);
    table.row("same voltage", "SER/PadType=SSTL_1.8V_II;DES/PadType=LVCMOS_1.8V", "01P", "01N", "");
    table.row("no voltage on one side", "SER/PadType=BARE", "", "", voltages);
    table.row("no voltages", "SER/PadType=BARE;DES/PadType=NAKED", "01P", "01N", "");
    table.row("both trainings", noTraining, "", "", "SER training value must have the length specified in data size!");
    table.row("DES training", "DES/TrainingValue=0101", "", "",
              "DES training value must have the length specified in data size!");
    table.row("data size", "DataSize=4;SER/TrainingValue=1010;DES/TrainingValue=wxyz", "01P", "01N", "");
    table.row("two unset", "SERCount=2", "", "", "SER location '' is already used!");
    table.row("one unset of each", "", "", "", "DES location '' is already used!");
    table.row("first clash", "SERCount=4", "01P,02P,02P,01P", "01P", "SER location '02P' is already used!");
    table.row("across the tables", "DESCount=2", "01P", "03P,01P", "DES location '01P' is already used!");
    table.row("within DES", "DESCount=2", "01P", "03P,03P", "DES location '03P' is already used!");
    table.row("hidden rows do not count", "", "01P,01P", "01N,01P", "");
}

void SerdesTest::checks() {
    QFETCH(QString, values);
    QFETCH(QString, serLocations);
    QFETCH(QString, desLocations);
    QFETCH(QString, message);
    for (const char* key : {"SER/PadType", "DES/PadType"})
        editor<QComboBox>(key)->addItems({"BARE", "NAKED"});
    set("Entity=link;Prefix=lk;SER/TrainingValue=101;DES/TrainingValue=010");
    set(qPrintable(values));
    fill("SER", 1, serLocations);
    fill("DES", 1, desLocations);
    ConsoleRecorder recorder;
    const bool passed = form()->isFullyConfigured();
    QCOMPARE(recorder.lines(), message.isEmpty() ? QStringList() : QStringList("E: " + message));
    QCOMPARE(passed, message.isEmpty());
}

void SerdesTest::statement() {
    set(otherValues);
    fill("SER", 1, "03P,03N");
    fill("SER", 2, "7,12");
    fill("DES", 1, "04P");
    const QString expected =
        "argDict = {  '%%PREFIX%%': 'lk', '%%ENTITY_NAME%%': 'link', '%%WORD_CLOCK%%': '125', '%%DATA_SIZE%%': '4', "
        "'%%SER_COUNT%%': '2', '%%SER_COUNT-1%%': '1', '%%DES_COUNT%%': '3', '%%DES_COUNT-1%%': '2', "
        "'%%BANK_NUMBER%%': '\"10\"', '%%SER_PADTYPE%%': '\"SSTL_1.8V_II\"', '%%SER_DIFFERENTIAL%%': '\"False\"', "
        "'%%SER_SLEW_RATE%%': '\"Medium\"', '%%SER_OUTPUT_CAPACITY%%': '\"12\"', "
        "'%%SER_OUTPUT_DELAY_LINE%%': '(0 => \"07\", 1 => \"12\")', '%%SER_TRAINING_VALUE%%': '\"0101\"', "
        "'%%SER_LOCATIONS%%': '(0 => \"03P\", 1 => \"03N\")', '%%DES_PADTYPE%%': '\"LVCMOS_1.8V\"', "
        "'%%DES_DIFFERENTIAL%%': '\"False\"', '%%DES_TERMINATION%%': '\"50\"', "
        "'%%DES_TERMINATION_REFERENCE%%': '\"Floating\"', '%%DES_TURBO%%': '\"True\"', "
        "'%%DES_INPUT_SIGNAL_SLOPE%%': '\"7.5\"', '%%DES_INPUT_DELAY_LINE%%': '(0 => \"00\", 1 => \"00\", 2 => "
        "\"00\")', '%%DES_TRAINING_VALUE%%': '\"0101\"', '%%DES_LOCATIONS%%': '(0 => \"04P\", 1 => \"\", 2 => "
        "\"\")', '%%DATE%%': 'DATE'}";
    const auto getStatement = [this] { return QString::fromStdString(form()->getArguments().getStatement()); };
    QCOMPARE(getStatement().replace(QRegularExpression("'\\d\\d/\\d\\d/\\d{4} - \\d\\d:\\d\\d'"), "'DATE'"), expected);

    set("SERCount=0;DESCount=0;DES/InputSignalSlope=20");
    const QString none = "'(others => \"XXX\")'";
    for (const QString& piece :
         QStringList{"'%%SER_COUNT-1%%': '-1'", "'%%DES_COUNT-1%%': '-1'", "'%%SER_OUTPUT_DELAY_LINE%%': " + none,
                     "'%%SER_LOCATIONS%%': " + none, "'%%DES_LOCATIONS%%': " + none, "'%%DES_INPUT_DELAY_LINE%%': '()'",
                     "'%%DES_INPUT_SIGNAL_SLOPE%%': '\"20.0\"'"})
        QVERIFY2(getStatement().contains(piece), qPrintable(piece));
}

void SerdesTest::linesArePlacedByKeyboard() {
    set("SERCount=30");
    LocationTableView* view = showTable("SER");
    for (const QString& pad : getPads())
        type(pad, Qt::Key_Return);
    QCOMPARE(view->getLocationList(), getPads());
    view->setCurrentIndex(view->model()->index(0, 2));
    QStringList typed;
    for (int delay = 34; delay < 64; ++delay) {
        typed += QString::number(delay);
        type(typed.last(), Qt::Key_Return);
    }
    QCOMPARE(view->getOutputDelayList(), typed);
}

void SerdesTest::tabGoesThroughCells() {
    set("SERCount=2");
    LocationTableView* view = showTable("SER");
    type("03P", Qt::Key_Tab);
    type("7", Qt::Key_Tab); // over the name of the next line
    type("03N", Qt::Key_Backtab);
    QCOMPARE(view->currentIndex(), view->model()->index(0, 2));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    type("99", Qt::Key_Tab); // beyond the range; there is no further cell
    QCOMPARE(view->currentIndex(), view->model()->index(1, 2));
    QCOMPARE(locations("SER"), QStringLiteral("03P,03N"));
    QCOMPARE(delays(), QStringLiteral("08,09"));
}

void SerdesTest::linesArePlacedByMouse() {
    set("DESCount=2;BankNumber=11");
    LocationTableView* view = showTable("DES");
    const QPoint cell = view->visualRect(view->model()->index(1, 1)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, cell);
    auto* combo = view->viewport()->findChild<QComboBox*>();
    QVERIFY(combo);
    QCOMPARE(combo->geometry(), view->visualRect(view->model()->index(1, 1)));
    QCOMPARE(combo->toolTip(), QStringLiteral("Pad of bank 11"));
    QCOMPARE(combo->currentIndex(), -1);
    combo->showPopup();
    const QModelIndex pad = combo->model()->index(3, 0);
    combo->view()->scrollTo(pad);
    QTest::mouseMove(combo->view()->viewport(), combo->view()->visualRect(pad).center());
    QTest::mouseClick(combo->view()->viewport(), Qt::LeftButton, {}, combo->view()->visualRect(pad).center());
    QTRY_COMPARE(locations("DES"), QStringLiteral(",02N"));
}

void SerdesTest::editors() {
    set("SERCount=30;DESCount=30");
    QWidget parent;
    for (const char* mode : {"SER", "DES"}) {
        LocationTableView* view = table(mode);
        const QAbstractItemDelegate* delegate = view->itemDelegate();
        const QModelIndex location = view->model()->index(29, 1);
        QVERIFY(!delegate->createEditor(&parent, {}, location.siblingAtColumn(0)));
        QVERIFY(!location.siblingAtColumn(0).flags().testFlag(Qt::ItemIsEditable));
        auto* combo = dynamic_cast<QComboBox*>(delegate->createEditor(&parent, {}, location));
        QCOMPARE(combo->count(), 30);
        QCOMPARE(combo->itemText(0) + combo->itemText(1) + combo->itemText(29), QStringLiteral("01P01N15N"));
        view->getModel()->item(29, 1)->setText("09N");
        delegate->setEditorData(combo, location);
        QCOMPARE(combo->currentText(), QStringLiteral("09N"));
        QLineEdit foreign;
        QVERIFY_EXCEPTION_THROWN(delegate->setEditorData(&foreign, location), Brindle::InternalError);
        QVERIFY_EXCEPTION_THROWN(delegate->setModelData(&foreign, view->model(), location), Brindle::InternalError);
        QVERIFY_EXCEPTION_THROWN(delegate->setEditorData(combo, location.siblingAtColumn(0)), Brindle::InternalError);
        QCOMPARE(view->rowHeight(29), 24);
    }
    QCOMPARE(table("DES")->model()->columnCount(), 2);
    QCOMPARE(table("DES")->getOutputDelayList(), QStringList());
    auto* spin = dynamic_cast<QSpinBox*>(
        table("SER")->itemDelegate()->createEditor(&parent, {}, table("SER")->model()->index(0, 2)));
    QCOMPARE(QPoint(spin->minimum(), spin->maximum()), QPoint(0, 63));
}

void SerdesTest::tabLeavesTheTable() {
    showTable("SER");
    editor<QWidget>("Entity")->setFocus();
    QStringList walk;
    do {
        walk += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (walk.last() != "Generate" && walk.size() < 20);
    QCOMPARE(walk, QStringList({"Entity", "", "", "SER/PadType", "SER/Differential", "SER/SlewRate",
                                "SER/OutputCapacity", "SER/TrainingValue", "LocationTableView/SER", "", "Reset",
                                "Generate"})); // titles have no name, closed sections are passed over
}

void SerdesTest::openSectionIsLegible() {
    for (const Brindle::Theme& theme : Brindle::Theme::getThemes()) {
        Brindle::theme = theme;
        theme.apply(*qApp);
        {
            const Velmora::StyleSheetPause pause; // as when the window is built
            open();
        }
        const QWidget* body = showTable("SER")->parentWidget();
        QVERIFY(body->maximumHeight() >= body->layout()->sizeHint().height());
        const QImage title = body->parentWidget()->findChild<QToolButton*>()->grab().toImage();
        QColor darkest = Qt::white;
        QColor lightest = Qt::black;
        const auto isDarker = [](const QColor& one, const QColor& other) {
            return Contrast::luminanceOf(one) < Contrast::luminanceOf(other);
        };
        for (int x = title.width() / 4; x < title.width(); ++x) { // the arrow stands to the left
            for (int y = 0; y < title.height(); ++y) {
                darkest = std::min(darkest, title.pixelColor(x, y), isDarker);
                lightest = std::max(lightest, title.pixelColor(x, y), isDarker);
            }
        }
        QVERIFY2(Contrast::between(lightest, darkest) >= Contrast::legibleText, qPrintable(theme.getName()));
    }
    Brindle::theme = Brindle::Theme::Light;
    Brindle::theme.apply(*qApp);
}

void SerdesTest::generates() {
    set("Entity=link;Prefix=lk;DataSize=4");
    set("SER/TrainingValue=1010;DES/TrainingValue=0101");
    fill("SER", 1, "01P");
    fill("DES", 1, "01N");
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(_dialog.asked, QStringList({"Choose a file name", QDir::currentPath() + "/link.vhd", "VHDL (*.vhd)"}));
    QCOMPARE(recorder.lines(), QStringList({"Generating Scope", "  Generating done"}));
    const QByteArray output = readFile(_dialog.answer);
    QVERIFY(output.contains("%%SER_TRAINING_VALUE%%=\"0101\"\n"));
    QVERIFY(output.contains("%%DES_LOCATIONS%%=(0 => \"01N\")\n"));
    QCOMPARE(QSettings().value("SERDESLeaf/Filepath").toString(), _dialog.answer);
    set("Entity=other");
    press("Generate");
    QCOMPARE(_dialog.asked.at(1), _dialog.answer);
}

void SerdesTest::argumentErrorsTellTheForm() {
    for (const char* key : {"Entity", "Prefix", "DES/TrainingValue"}) {
        set(otherValues);
        set({{key, "1'0"}});
        try {
            form()->getArguments();
            QFAIL(key);
        } catch (const Brindle::InvalidRequest& error) {
            QVERIFY(error.getField("value").find("1'0") != std::string::npos);
            QCOMPARE(error.getLocation().file, std::string("src/bin/velmora/SERDESLeaf"));
            QCOMPARE(error.getLocation().function, std::string("getArguments"));
        }
    }
}

void SerdesTest::refusals_data() {
    const TestTable<QByteArray, QString, QStringList, QByteArray> table("script", "entity", "told", "output");
    table.row("check fails: the old file stays", echo, "", {"E:   Entity name not specified!", "  Generating failed"},
              "old");
    table.row("script raises: the file is empty", "raise ValueError('x')", "link",
              {"E:   Processing aborted [Should not be here]", "  Generating Failed"}, {});
    table.row("quote in the name", echo, "l'k",
              {"E:   Processing aborted [Unsupported character in value] (key: %%ENTITY_NAME%%, value: l'k)",
               "  Generating Failed"},
              {});
}

void SerdesTest::refusals() {
    QFETCH(QByteArray, script);
    QFETCH(QString, entity);
    QFETCH(QStringList, told);
    open(script);
    _prefix->write("out.vhd", "old");
    set({{"Entity", entity}, {"Prefix", "lk"}, {"SER/TrainingValue", "101"}, {"DES/TrainingValue", "010"}});
    fill("SER", 1, "01P");
    ConsoleRecorder recorder;
    press("Generate");
    QStringList lines = recorder.lines().mid(1);
    if (Brindle::isDebug())
        lines.replaceInStrings(QRegularExpression(" \\[src/bin/velmora/[^]]*\\]$"), "");
    QCOMPARE(lines.mid(lines.size() - told.size()), told); // a trace may stand in front
    QTEST(readFile(_dialog.answer), "output");
}

VELMORA_TEST_MAIN(SerdesTest)
#include "tst_serdes.moc"
