#include <support/ConsoleRecorder.h>
#include <support/FormText.h>
#include <support/PathDialogs.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/FoldWidget.h>
#include <velmora/IPLeaf.h>
#include <velmora/ScopeLeaf.h>
#include <velmora/StartupScopeLeaf.h>
#include <velmora/StartupTriggerTableView.h>
#include <velmora/TriggerTableView.h>

#include <Brindle/Exception.h>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSettings>
#include <QToolButton>

#include <memory>

using FormText::parse;
using FormText::Values;

namespace {

const QByteArray echo = "def generate(argDict):\n"
                        "  return '\\n'.join(key + '=' + argDict[key] for key in sorted(argDict))\n";

const QString scope = "ScopeLeaf";
const QString startupScope = "StartupScopeLeaf";

const QMap<QString, Values> resetValues{
    {scope, parse("Entity=;InputCount=2;CaptureDepth=2K;CaptureMode=Pre-trigger;WindowCaptureLength=64;"
                  "PreTriggerSamples=1;UserDataDelay=0;StoreTrigger=Disable;StoreWindow=Disable;TriggerCount=1;"
                  "TriggerMode=Basic;MultipleLevelTrigger=Disable")},
    {startupScope, parse("Entity=;InputCount=2;CaptureDepth=2K;PreTriggerSamples=1;TriggerCount=1")}};
/// Others for every field, no number at an end of its range.
const QMap<QString, Values> otherValues{
    {scope, parse("Entity=la;InputCount=17;CaptureDepth=6K;CaptureMode=Multiple windows;WindowCaptureLength=100;"
                  "PreTriggerSamples=33;UserDataDelay=1;StoreTrigger=Enable;StoreWindow=Enable;TriggerCount=3;"
                  "TriggerMode=Basic & Edges;MultipleLevelTrigger=Enable")},
    {startupScope, parse("Entity=la;InputCount=17;CaptureDepth=48K;PreTriggerSamples=33;TriggerCount=3")}};

const QString allValues = "0,1,Rising edge,Falling edge,Both edges,Ignore";

} // namespace

/// The forms of the scope and the startup scope and their tables.
class ScopesTest : public QObject {
    Q_OBJECT

private:
    /// Opens the page of the form of that class.
    void open(const QString& className, const QByteArray& script = echo);
    void reopen() { open(QString(_className)); }
    template <class Editor>
    Editor* editor(const QString& name) const {
        return _page->findChild<Editor*>(name);
    }
    Velmora::ScopeLeaf* scopeForm() const { return editor<Velmora::ScopeLeaf>(scope); }
    Velmora::StartupScopeLeaf* startupForm() const { return editor<Velmora::StartupScopeLeaf>(startupScope); }
    Velmora::LineTableView* table() const { return _page->findChild<Velmora::LineTableView*>(); }
    QString tableName() const { return table()->objectName(); }
    QAbstractItemDelegate* delegate() const { return table()->itemDelegate(); }
    void set(const Values& values) const;
    void set(const QString& values) const { set(parse(values)); }
    Values values() const { return FormText::read(_page.get(), resetValues[_className].keys()); }
    /// Puts texts, separated by commas, into a column of the table, from the first row on.
    void fill(int column, const QString& texts) const;
    /// The cells of the first row, separated by "|", and so on.
    QStringList cells(int rowCount) const;
    QString statement() const;
    /// The argument of that key.
    QString argument(const QString& key) const {
        return statement().section("'%%" + key + "%%': '", 1).section('\'', 0, 0);
    }
    void press(const char* button) const { QTest::mousePress(editor<QPushButton>(button), Qt::LeftButton); }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<Velmora::IPLeaf> _page;
    QString _className;
    PathDialogs _dialog;

private Q_SLOTS:
    void init();
    void cleanup();

    void rows_data() { forms(); }
    void rows();
    void resets_data() { forms(); }
    void resets();
    void valuesAreKept_data() { forms(); }
    void valuesAreKept();
    void everyStoredValueOpens_data() { forms(); }
    void everyStoredValueOpens();
    void countHidesRows_data() { forms(); }
    void countHidesRows();
    void depths_data() { forms(); }
    void depths();
    void generates_data() { forms(); }
    void generates();
    void tablesTakeWhatCouldBeEntered();
    void captureModeEnables();
    void valueStrings_data();
    void valueStrings();
    void valueSets_data();
    void valueSets();
    void statements();
    void editors_data();
    void editors();
    void leftEdgeStays();
    void linesAreFilledInByKeyboard();
    void argumentErrorsTellTheForm_data();
    void argumentErrorsTellTheForm();
    void refusals_data();
    void refusals();

private:
    void forms();
    void showPage();
};

void ScopesTest::forms() {
    const TestTable<QString> table("className");
    table.row("scope", scope);
    table.row("startup scope", startupScope);
}

/// With all its sections open.
void ScopesTest::showPage() {
    _page->resize(590, 900);
    _page->show();
    _page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(_page.get()));
    for (auto* toggle : _page->findChildren<QToolButton*>())
        QTest::mouseClick(toggle, Qt::LeftButton);
    QCoreApplication::processEvents();
}

void ScopesTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _dialog.answer = _prefix->path("out.vhd");
    _dialog.asked.clear();
    QSettings().setValue("animations", "Never");
    open(scope);
}

void ScopesTest::cleanup() {
    _page.reset();
    _prefix.reset();
}

void ScopesTest::open(const QString& className, const QByteArray& script) {
    _page.reset();
    _className = className;
    _prefix->writeScript("share/velmora/Orvane/ip/generator.py", script);
    _page = std::make_unique<Velmora::IPLeaf>(
        _prefix
            ->addIP("Orvane/ip", "name " + QByteArray(className == scope ? "Scope" : "Startup Scope") +
                                     "\ncategory Debug\nuid IP\ncompany Orvane\nvariants V\nscript generator.py\n")
            .toStdString());
}

void ScopesTest::set(const Values& values) const {
    for (auto value = values.begin(); value != values.end(); ++value) {
        auto* widget = editor<QWidget>(value.key());
        QVERIFY(widget->metaObject()->userProperty().write(widget, *value));
    }
}

void ScopesTest::fill(int column, const QString& texts) const {
    int row = 0;
    for (const QString& text : texts.split(','))
        table()->getModel()->item(row++, column)->setText(text);
}

QStringList ScopesTest::cells(int rowCount) const {
    QStringList rows;
    for (int row = 0; row < rowCount; ++row) {
        QStringList texts;
        for (int column = 0; column < table()->getModel()->columnCount(); ++column)
            texts += table()->getModel()->item(row, column)->text();
        rows += texts.join('|');
    }
    return rows;
}

QString ScopesTest::statement() const {
    const auto arguments = scopeForm() ? scopeForm()->getArguments() : startupForm()->getArguments();
    return QString::fromStdString(arguments.getStatement())
        .replace(QRegularExpression("'\\d\\d/\\d\\d/\\d{4} - \\d\\d:\\d\\d'"), "'DATE'");
}

void ScopesTest::rows() {
    QFETCH(QString, className);
    open(className);
    QStringList found = FormText::rowsOf(editor<QWidget>(className)).mid(0, 1);
    for (const auto* section : _page->findChildren<Velmora::FoldWidget*>()) {
        found += section->findChild<QToolButton*>()->text();
        found += FormText::rowsOf(section->findChild<QSpinBox*>()->parentWidget());
    }
    const QString alias = "||The alias is not mandatory,\nit is only an aid to recognize easily a net.|";
    const QString options = "||Enable,Disable";
    const QStringList start{"Entity name|Entity||", "Capture configuration",
                            "Input line count|InputCount|Range 2 to 240.|2..240",
                            "Capture depth|CaptureDepth||2K=2048,4K=4096,6K=6144,12K=12288,24K=24576,48K=49152"};
    const QStringList scopeRows =
        start +
        QStringList{"Capture mode|CaptureMode||Pre-trigger=pre_trigger_enable,Multiple windows=multiple_windows",
                    "Window capture length|WindowCaptureLength|Range 64 to 2048.|64..2048",
                    "Pre-trigger samples|PreTriggerSamples|Range 1 to 2048.|1..2048",
                    "User data delay|UserDataDelay|Range 0 to 2.|0..2",
                    "Store trigger pulse|StoreTrigger" + options,
                    "Store window number|StoreWindow" + options,
                    "Trigger configuration",
                    "Trigger line count|TriggerCount|Range 1 to 32.|1..32",
                    "Trigger mode|TriggerMode||Basic=basic,Basic & Edges=basic_and_edges",
                    "Multiple level trigger|MultipleLevelTrigger" + options,
                    "none|TriggerTableView" + alias.mid(1)};
    const QStringList startupRows =
        start + QStringList{"Pre-trigger samples|PreTriggerSamples|Range 1 to 1000.|1..1000", "Trigger configuration",
                            "Trigger line count|TriggerCount|Range 1 to 4.|1..4",
                            "none|StartupTriggerTableView" + alias.mid(1)};
    QCOMPARE(found, className == scope ? scopeRows : startupRows);
    QStringList headers{"Input", "Alias", "Trigger value", "First level trigger value"};
    for (int column = 0; column < table()->model()->columnCount(); ++column)
        QCOMPARE(table()->model()->headerData(column, Qt::Horizontal).toString(), headers.takeFirst());
    QCOMPARE(headers.size(), className == scope ? 0 : 1);
}

void ScopesTest::resets() {
    QFETCH(QString, className);
    open(className);
    QCOMPARE(values(), resetValues[className]); // the first start
    const QStringList initial = cells(32);
    QCOMPARE(initial.first(), className == scope ? QString("Trig0||Ignore|Ignore") : QString("Trig0||0"));
    QCOMPARE(initial.last(), className == scope ? QString("Trig31||Ignore|Ignore") : QString("Trig31||0"));
    set(otherValues[className]);
    fill(1, "a,b,c,d,e");
    fill(2, "1,1,1,1,1");
    press("Reset");
    QCOMPARE(values(), resetValues[className]);
    QCOMPARE(cells(32), initial);
}

void ScopesTest::valuesAreKept() {
    QFETCH(QString, className);
    open(className);
    set(otherValues[className]);
    fill(1, "clk,,\"x; y\",,hidden");
    fill(2, "1,0,1,0,1");
    const QStringList filled = cells(32);
    reopen();
    QCOMPARE(values(), otherValues[className]);
    QCOMPARE(cells(32), filled);

    const QString rowPrefix = tableName() + "/";
    _page.reset();
    QSettings settings;
    settings.beginGroup(className);
    Values stored;
    for (const QString& key : settings.allKeys()) {
        if (!key.startsWith(rowPrefix))
            stored[key] = settings.value(key).toString();
    }
    const Values indexes = className == scope
                               ? parse("CaptureDepth=2;CaptureMode=1;TriggerMode=1;MultipleLevelTrigger=0;"
                                       "StoreTrigger=0;StoreWindow=0",
                                       otherValues[className])
                               : parse("CaptureDepth=5", otherValues[className]);
    QCOMPARE(stored, indexes);
    for (int row = 0; row < 32; ++row)
        QCOMPARE(settings.value(rowPrefix + QString::number(row)).toStringList().join('|'), filled.at(row));

    reopen();
    settings.remove(QString());
    if (className == scope)
        scopeForm()->load();
    else
        startupForm()->load();
    QCOMPARE(values(), otherValues[className]); // absent values change nothing
    QCOMPARE(cells(32), filled);
}

void ScopesTest::everyStoredValueOpens() {
    QFETCH(QString, className);
    open(className);
    reopen();
    const QStringList keys = QSettings().allKeys().filter(QRegularExpression("^" + className + "/"));
    QVERIFY(keys.size() > 32);
    for (const QVariant& rubbish :
         {QVariant(QStringList{"a", "b", "c", "d"}), QVariant("seven"), QVariant(-5), QVariant(1000000),
          QVariant(QByteArray(1000, '\xff')), QVariant("3000000000"), QVariant("nan"), QVariant(QVariantMap())}) {
        _page.reset();
        {
            QSettings settings;
            for (const QString& key : keys)
                settings.setValue(key, rubbish);
        }
        reopen();
        Values found = values();
        for (const char* combo : {"CaptureDepth", "CaptureMode", "TriggerMode", "MultipleLevelTrigger"})
            QCOMPARE(found.value(combo), resetValues[className].value(combo));
        const QString alias = rubbish.type() == QVariant::StringList ? "b" : "";
        const QString rest = className == scope ? "|Ignore|Ignore" : "|0";
        for (int row = 0; row < 32; ++row)
            QCOMPARE(cells(32).at(row), QStringLiteral("Trig%1|").arg(row) + alias + rest);
    }
}

void ScopesTest::tablesTakeWhatCouldBeEntered() {
    const QStringList rows{"other|n|Both edges|0", "Trig1|m|ignore|2", "Trig2|l|1", "Trig3"};
    for (int row = 0; row < rows.size(); ++row) {
        for (const char* group : {"ScopeLeaf/TriggerTableView", "StartupScopeLeaf/StartupTriggerTableView"})
            QSettings().setValue(QStringLiteral("%1/%2").arg(group).arg(row), rows.at(row).split('|'));
    }
    table()->load();
    QCOMPARE(cells(4), QStringList({"Trig0|n|Both edges|0", "Trig1|m|Ignore|Ignore", "Trig2|l|1|Ignore",
                                    "Trig3||Ignore|Ignore"}));
    open(startupScope);
    QCOMPARE(cells(4), QStringList({"Trig0|n|0", "Trig1|m|0", "Trig2|l|1", "Trig3||0"}));
}

void ScopesTest::countHidesRows() {
    QFETCH(QString, className);
    open(className);
    const QAbstractItemModelTester tester(table()->model());
    const bool isScope = className == scope;
    const int most = isScope ? 32 : 4;
    QStringList numbers;
    for (int row = 0; row < 32; ++row)
        numbers += QString::number(row);
    fill(2, numbers.join(','));
    for (const int count : {3, 2, most, 1}) {
        set("TriggerCount=" + QString::number(count));
        QCOMPARE(table()->model()->rowCount(), count);
        const auto* view = editor<Velmora::TriggerTableView>("TriggerTableView");
        QCOMPARE(isScope ? view->getTriggerValueList()
                         : editor<Velmora::StartupTriggerTableView>(tableName())->getTriggerValueList(),
                 numbers.mid(0, count));
        if (isScope)
            QCOMPARE(view->getFirstTriggerValueList().join(""), QString("Ignore").repeated(count));
    }
    QCOMPARE(table()->rowHeight(0), 24);
}

void ScopesTest::depths() {
    QFETCH(QString, className);
    open(className);
    const QMap<QString, QString> written{{"2K", "2048 11"},   {"4K", "4096 12"},   {"6K", "6144 13"},
                                         {"12K", "12288 14"}, {"24K", "24576 15"}, {"48K", "49152 16"}};
    for (auto depth = written.begin(); depth != written.end(); ++depth) {
        set("CaptureDepth=" + depth.key());
        QCOMPARE(argument("CAPTURE_DEPTH") + " " + argument("CAPTURE_WIDTH"), *depth);
    }
    editor<QComboBox>("CaptureDepth")->addItem("1K", 1024);
    set("CaptureDepth=1K");
    QVERIFY_EXCEPTION_THROWN(statement(), Brindle::InternalError);
}

void ScopesTest::captureModeEnables() {
    const auto enabled = [this] {
        QStringList names;
        for (const QString& name : resetValues[scope].keys()) {
            if (!editor<QWidget>(name)->isEnabled())
                names += name;
        }
        return names.join(',');
    };
    const QString inPreTrigger = "StoreWindow,WindowCaptureLength";
    QCOMPARE(enabled(), inPreTrigger);
    set("CaptureMode=Multiple windows;PreTriggerSamples=7");
    QCOMPARE(enabled(), QString("PreTriggerSamples"));
    QCOMPARE(argument("PRE_TRIGGER_SAMPLES"), QString("7"));
    reopen();
    QCOMPARE(enabled(), QString("PreTriggerSamples"));
    press("Reset");
    QCOMPARE(enabled(), inPreTrigger);
}

void ScopesTest::valueStrings_data() {
    const TestTable<QString, QString, QString> table("mode", "values", "expected");
    const QString unsupported = "Unsupported value in basic trigger mode";
    const auto row = [&table](const QString& mode, const QString& values, const QString& expected) {
        table.row(qPrintable(mode + ": " + values), mode, values, expected);
    };
    row("Basic", "", "");
    row("Basic", "0,1,Ignore", R"(0 => "00", 1 => "01", 2 => "11")");
    row("Basic", "1,Rising edge", unsupported);
    row("Basic", "Falling edge", unsupported);
    row("Basic", "Both edges", unsupported);
    row("Basic & Edges", "", "");
    row("Basic & Edges", allValues, R"(0 => "000", 1 => "001", 2 => "110", 3 => "100", 4 => "111", 5 => "010")");
    row("Basic & Edges", "0,ignore", "Should not be here");
    row("startup", "", R"("")");
    row("startup", "1,0,0", R"("001")");
    row("startup", "1,1,0,1", R"("1011")");
}

void ScopesTest::valueStrings() {
    QFETCH(QString, mode);
    QFETCH(QString, values);
    const QStringList list = values.split(',', Qt::SkipEmptyParts);
    std::string found;
    try {
        if (mode == "startup") {
            open(startupScope);
            found = startupForm()->getTriggerValueString(list);
        } else {
            set("TriggerMode=" + mode);
            found = scopeForm()->getTriggerValueString(list);
        }
    } catch (const Brindle::Error& error) {
        found = error.getMessage();
        QCOMPARE(dynamic_cast<const Brindle::InternalError*>(&error) != nullptr, mode != "Basic");
    }
    QTEST(QString::fromStdString(found), "expected");
}

void ScopesTest::valueSets_data() {
    const TestTable<QString, QStringList> table("fields", "sets"); // sets: basic, advanced, edge, advanced edge
    const QString noLevels = "(others => \"00\")";
    const QString noEdges = "(others => \"000\")";
    const QString levels = R"(0 => "01", 1 => "11", 2 => "00")";
    const QString firstLevels = R"(0 => "00", 1 => "01", 2 => "11")";
    const QString edges = R"(0 => "001", 1 => "010", 2 => "000")";
    const QString firstEdges = R"(0 => "000", 1 => "001", 2 => "010")";
    table.row("levels", "TriggerMode=Basic", {levels, noLevels, noEdges, noEdges});
    table.row("two levels", "TriggerMode=Basic;MultipleLevelTrigger=Enable", {levels, firstLevels, noEdges, noEdges});
    table.row("edges", "TriggerMode=Basic & Edges", {noLevels, noLevels, edges, noEdges});
    table.row("two levels with edges", "TriggerMode=Basic & Edges;MultipleLevelTrigger=Enable",
              {noLevels, noLevels, edges, firstEdges});
}

void ScopesTest::valueSets() {
    QFETCH(QString, fields);
    set("TriggerCount=3;" + fields);
    fill(2, "1,Ignore,0");
    fill(3, "0,1,Ignore");
    const QStringList found{argument("BASIC_TRIGGER_VALUES"), argument("ADVANCED_TRIGGER_VALUES"),
                            argument("EDGE_TRIGGER_VALUES"), argument("ADVANCED_EDGE_TRIGGER_VALUES")};
    QTEST(found, "sets");
}

void ScopesTest::statements() {
    set(otherValues[scope]);
    fill(2, "Rising edge,0,Ignore");
    QCOMPARE(statement(),
             QString("argDict = {  '%%STORE_WINDOW%%': '4', '%%STORE_TRIGGER%%': '1', '%%ENTITY_NAME%%': 'la', "
                     "'%%CAPTURE_DEPTH%%': '6144', '%%CAPTURE_WIDTH%%': '13', "
                     "'%%TRIGGER_MODE%%': '\"basic_and_edges\"', '%%CAPTURE_MODE%%': '\"multiple_windows\"', "
                     "'%%USER_DATA_DELAY%%': '1', '%%EDGE_TRIGGER_VALUES%%': '0 => \"110\", 1 => \"000\", 2 => "
                     "\"010\"', '%%INPUT_LINE_COUNT%%': '17', '%%BASIC_TRIGGER_VALUES%%': '(others => \"00\")', "
                     "'%%MULTIPLE_TRIGGER_LEVEL%%': 'true', '%%TRIGGER_LINE_COUNT%%': '3', "
                     "'%%INPUT_LINE_COUNT-1%%': '16', '%%APPLICATION%%': 'Velmora', "
                     "'%%ADVANCED_TRIGGER_VALUES%%': '(others => \"00\")', '%%TRIGGER_LINE_COUNT-1%%': '2', "
                     "'%%PRE_TRIGGER_SAMPLES%%': '33', '%%WINDOW_CAPTURE_LENGTH%%': '100', "
                     "'%%ADVANCED_EDGE_TRIGGER_VALUES%%': '0 => \"010\", 1 => \"010\", 2 => \"010\"', "
                     "'%%DATE%%': 'DATE'}"));
    press("Reset");
    for (const char* piece : {"'%%STORE_WINDOW%%': '0', '%%STORE_TRIGGER%%': '0'", "'%%TRIGGER_MODE%%': '\"basic\"'",
                              "'%%CAPTURE_MODE%%': '\"pre_trigger_enable\"'", "'%%MULTIPLE_TRIGGER_LEVEL%%': 'false'"})
        QVERIFY2(statement().contains(piece), piece);

    open(startupScope);
    set(otherValues[startupScope]);
    fill(2, "1,0,0");
    QCOMPARE(statement(),
             QString("argDict = {  '%%ENTITY_NAME%%': 'la', '%%CAPTURE_DEPTH%%': '49152', '%%CAPTURE_WIDTH%%': '16', "
                     "'%%INPUT_LINE_COUNT%%': '17', '%%TRIGGER_LINE_COUNT%%': '3', "
                     "'%%STARTUP_TRIG_VALUE%%': '\"001\"', '%%INPUT_LINE_COUNT-1%%': '16', "
                     "'%%APPLICATION%%': 'Velmora', '%%TRIGGER_LINE_COUNT-1%%': '2', "
                     "'%%PRE_TRIGGER_SAMPLES%%': '33', '%%DATE%%': 'DATE'}"));
}

void ScopesTest::editors_data() {
    const TestTable<QString, QString, QStringList> table("className", "fields",
                                                         "items"); // items: of the columns from "Trigger value" on
    table.row("levels", scope, "TriggerMode=Basic", {"0,1,Ignore", "none"});
    table.row("two levels", scope, "TriggerMode=Basic;MultipleLevelTrigger=Enable", {"0,1,Ignore", "0,1,Ignore"});
    table.row("edges", scope, "TriggerMode=Basic & Edges", {allValues, "none"});
    table.row("two levels with edges", scope, "TriggerMode=Basic & Edges;MultipleLevelTrigger=Enable",
              {allValues, allValues});
    table.row("startup scope", startupScope, "", {"0,1"});
}

void ScopesTest::editors() {
    QFETCH(QString, className);
    QFETCH(QString, fields);
    QFETCH(QStringList, items);
    open(className);
    set(fields);
    QWidget parent;
    QAbstractItemModel* model = table()->model();
    const QModelIndex input = model->index(0, 0);
    QVERIFY(!delegate()->createEditor(&parent, {}, input));
    const QModelIndex alias = input.siblingAtColumn(1);
    auto* line = dynamic_cast<QLineEdit*>(delegate()->createEditor(&parent, {}, alias));
    fill(1, "clk");
    delegate()->setEditorData(line, alias);
    QCOMPARE(line->text(), QString("clk"));
    line->setText("rst");
    delegate()->setModelData(line, model, alias);
    QCOMPARE(alias.data().toString(), QString("rst"));
    for (int column = 2; column < model->columnCount(); ++column) {
        const QModelIndex value = input.siblingAtColumn(column);
        auto* combo = dynamic_cast<QComboBox*>(delegate()->createEditor(&parent, {}, value));
        QCOMPARE(combo ? FormText::rangeOf(combo) : "none", items.at(column - 2));
        if (!combo)
            continue;
        fill(column, "1");
        delegate()->setEditorData(combo, value);
        QCOMPARE(combo->currentText(), QString("1"));
        combo->setCurrentText("0");
        delegate()->setModelData(combo, model, value);
        QCOMPARE(value.data().toString(), QString("0"));
        QVERIFY_EXCEPTION_THROWN(delegate()->setEditorData(line, value), Brindle::InternalError);
        QVERIFY_EXCEPTION_THROWN(delegate()->setModelData(line, model, value), Brindle::InternalError);
    }
}

void ScopesTest::leftEdgeStays() {
    set("TriggerMode=Basic & Edges");
    fill(2, "Both edges");
    QCOMPARE(argument("EDGE_TRIGGER_VALUES"), QString("0 => \"111\""));
    showPage();
    const QImage known = table()->grab().toImage();
    set("TriggerMode=Basic");
    QVERIFY(table()->grab().toImage() != known); // the edge stands out
    const QModelIndex value = table()->model()->index(0, 2);
    QWidget parent;
    QWidget* combo = delegate()->createEditor(&parent, {}, value);
    delegate()->setEditorData(combo, value);
    delegate()->setModelData(combo, table()->model(), value); // nothing was chosen
    QCOMPARE(value.data().toString(), QString("Both edges"));
}

void ScopesTest::linesAreFilledInByKeyboard() {
    set("TriggerCount=32");
    showPage();
    QCOMPARE(table()->horizontalScrollBar()->maximum(), 0);
    table()->setFocus();
    table()->setCurrentIndex(table()->model()->index(0, 1));
    const auto type = [](const QString& text, Qt::Key end) {
        for (const QChar character : text) // the first one opens the editor, which then has the focus
            QTest::keyClicks(QApplication::focusWidget(), character);
        QTest::keyClick(QApplication::focusWidget(), end);
    };
    type("clk", Qt::Key_Tab);
    type("1", Qt::Key_Tab); // over the first level, which is not asked for, and the name of the next line
    type("rst_n", Qt::Key_Tab);
    type("0", Qt::Key_Return);
    QCOMPARE(cells(2), QStringList({"Trig0|clk|1|Ignore", "Trig1|rst_n|0|Ignore"}));
}

void ScopesTest::generates() {
    QFETCH(QString, className);
    open(className);
    set("Entity=la");
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(_dialog.asked, QStringList({"Choose a file name", QDir::currentPath() + "/la.vhd", "VHDL (*.vhd)"}));
    QCOMPARE(recorder.take(), QStringList({"Generating Scope", "  Generating done"}));
    QVERIFY(readFile(_dialog.answer).contains("%%ENTITY_NAME%%=la\n"));
    QCOMPARE(QSettings().value(className + "/Filepath").toString(), _dialog.answer);
    set("Entity=");
    press("Generate");
    QCOMPARE(_dialog.asked.at(1), _dialog.answer);
    QCOMPARE(recorder.take(),
             QStringList({"Generating Scope", "E:   Entity name not specified!", "  Generating failed"}));
    QVERIFY(!readFile(_dialog.answer).isEmpty());
    _dialog.answer.clear();
    press("Generate");
    QCOMPARE(recorder.lines(), QStringList());
}

void ScopesTest::argumentErrorsTellTheForm_data() {
    const TestTable<QString, QString, QString> table("className", "fields", "triggerValues");
    table.row("name", scope, "Entity=l'a", "0");
    table.row("edge in basic mode", scope, "Entity=la", "Both edges");
    table.row("startup scope, name", startupScope, "Entity=l\\a", "0");
}

void ScopesTest::argumentErrorsTellTheForm() {
    QFETCH(QString, className);
    QFETCH(QString, fields);
    QFETCH(QString, triggerValues);
    open(className);
    set(fields);
    fill(2, triggerValues);
    try {
        statement();
        QFAIL("nothing thrown");
    } catch (const Brindle::Error& error) {
        QCOMPARE(error.getLocation().file, "src/bin/velmora/" + className.toStdString());
    }
}

void ScopesTest::refusals_data() {
    const TestTable<QString, QByteArray, QString, QString, QString> table("className", "script", "fields",
                                                                          "triggerValues", "told");
    const QString defect = "Should not be here]";
    const QByteArray raising = "raise ValueError('x')";
    table.row("edge in basic mode", scope, echo, "TriggerCount=2", "0,Rising edge",
              "Unsupported value in basic trigger mode] (input: Trig1, value: Rising edge)");
    table.row("unknown value", scope, echo, "TriggerMode=Basic & Edges", "both", defect);
    table.row("script raises", scope, raising, "", "0", defect);
    table.row("script raises, startup scope", startupScope, raising, "", "0", defect);
    table.row("quote in the name", startupScope, echo, "Entity=l'a", "0",
              "Unsupported character in value] (key: %%ENTITY_NAME%%, value: l'a)");
}

void ScopesTest::refusals() {
    QFETCH(QString, className);
    QFETCH(QByteArray, script);
    QFETCH(QString, fields);
    QFETCH(QString, triggerValues);
    QFETCH(QString, told);
    open(className, script);
    _prefix->write("out.vhd", "old");
    set(parse(fields, parse("Entity=la")));
    fill(2, triggerValues);
    const QStringList filled = cells(32);
    ConsoleRecorder recorder;
    press("Generate");
    const QStringList lines = recorder.lines().mid(recorder.lines().size() - 2); // a trace may stand in front
    QCOMPARE(lines, QStringList({"E:   Processing aborted [" + told, "  Generating Failed"}));
    QCOMPARE(readFile(_dialog.answer), QByteArray());
    QCOMPARE(cells(32), filled);
}

VELMORA_TEST_MAIN(ScopesTest)
#include "tst_scopes.moc"
