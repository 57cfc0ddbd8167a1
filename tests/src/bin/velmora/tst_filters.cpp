#include <support/ConsoleRecorder.h>
#include <support/PathDialogs.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/Coefficients.h>
#include <velmora/IPLeaf.h>
#include <velmora/MacFirLeaf.h>
#include <velmora/SystolicLeaf.h>
#include <velmora/TransposeDualLeaf.h>
#include <velmora/TransposeLeaf.h>
#include <velmora/TransposeSymmetricLeaf.h>

#include <Brindle/Exception.h>

#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QSpinBox>
#include <QTextEdit>

#include <memory>

namespace {

const Brindle::Location caller{"src/bin/velmora/SomeLeaf", "getFilter", 7};

/// What sets one filter form apart.
struct Kind {
    const char* className;
    const char* ipName;
    const char* title;
    int widestInput;
};

constexpr Kind mac{"MacFirLeaf", "Mac fir", "Generating filter mac", 18};
constexpr Kind systolic{"SystolicLeaf", "Systolic", "Generating systolic filter", 18};
constexpr Kind transpose{"TransposeLeaf", "Transpose", "Generating transpose filter", 24};
constexpr Kind dual{"TransposeDualLeaf", "Transpose dual", "Generating transpose dual filter", 18};
constexpr Kind symmetric{"TransposeSymmetricLeaf", "Transpose symmetric", "Generating transpose symmetric filter", 18};

const QList<Kind> streamingKinds{systolic, transpose, dual, symmetric};
const QList<Kind> allKinds{mac, systolic, transpose, dual, symmetric};

/// Calls the function with the form as what it is.
template <class Use>
auto withLeaf(QWidget* form, Use use) {
    if (auto* leaf = qobject_cast<Velmora::MacFirLeaf*>(form))
        return use(*leaf);
    if (auto* leaf = qobject_cast<Velmora::SystolicLeaf*>(form))
        return use(*leaf);
    if (auto* leaf = qobject_cast<Velmora::TransposeLeaf*>(form))
        return use(*leaf);
    if (auto* leaf = qobject_cast<Velmora::TransposeDualLeaf*>(form))
        return use(*leaf);
    return use(dynamic_cast<Velmora::TransposeSymmetricLeaf&>(*form));
}

const QByteArray echo = "def generate(argDict):\n"
                        "  return '\\n'.join(key + '=' + argDict[key] for key in sorted(argDict))\n";

} // namespace

Q_DECLARE_METATYPE(Kind)

using Values = QMap<QString, QVariant>;

/// The forms of the five FIR filters.
class FiltersTest : public QObject {
    Q_OBJECT

private:
    void open(const Kind& kind, const QByteArray& script = echo);
    QWidget* form() const { return _page->findChild<QWidget*>(_kind.className); }
    template <class Editor>
    Editor* editor(const char* key) const {
        return form()->findChild<Editor*>(key);
    }
    void set(const Values& values) const;
    QVariant value(const QString& key) const;
    Values values() const;
    QString help(const char* key) const;
    void press(const char* button) const { QTest::mousePress(editor<QPushButton>(button), Qt::LeftButton); }
    QString statement() const {
        return withLeaf(form(),
                        [](const auto& leaf) { return QString::fromStdString(leaf.getArguments().getStatement()); });
    }
    void addKinds(const QList<Kind>& kinds) const {
        QTest::addColumn<Kind>("kind");
        for (const Kind& kind : kinds)
            QTest::newRow(kind.className) << kind;
    }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<Velmora::IPLeaf> _page;
    Kind _kind = mac;
    PathDialogs _dialog;

private Q_SLOTS:
    void init();
    void cleanup();

    void coefficientLists_data();
    void coefficientLists();
    void coefficientAggregates_data();
    void coefficientAggregates();
    void macRows();
    void streamingRows_data() { addKinds(streamingKinds); }
    void streamingRows();
    void firstStartShowsMinimums_data() { addKinds(allKinds); }
    void firstStartShowsMinimums();
    void resetGivesTheResetValues_data() { addKinds(allKinds); }
    void resetGivesTheResetValues();
    void valuesAreKept_data() { addKinds(allKinds); }
    void valuesAreKept();
    void everyStoredValueOpens_data() { addKinds(allKinds); }
    void everyStoredValueOpens();
    void modeEnablesFields_data() { addKinds(streamingKinds); }
    void modeEnablesFields();
    void checks_data();
    void checks();
    void statements_data();
    void statements();
    void argumentErrors_data();
    void argumentErrors();
    void generates_data() { addKinds(allKinds); }
    void generates();
    void inputModeSendsTheLiteral();
    void refusals_data();
    void refusals();
    void cancelledDialogDoesNothing();
};

void FiltersTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _dialog.answer = _prefix->path("out.vhd");
    _dialog.asked.clear();
}

void FiltersTest::cleanup() {
    _page.reset();
    _prefix.reset();
}

void FiltersTest::open(const Kind& kind, const QByteArray& script) {
    _page.reset();
    _kind = kind;
    _prefix->writeScript("share/velmora/Orvane/filter/generator.py", script);
    _page = std::make_unique<Velmora::IPLeaf>(
        _prefix
            ->addIP("Orvane/filter",
                    QByteArray("name ") + kind.ipName +
                        "\ncategory DSP/Filters\nuid FIR\ncompany Orvane\nvariants V\nscript generator.py\n")
            .toStdString());
}

void FiltersTest::set(const Values& values) const {
    for (auto value = values.begin(); value != values.end(); ++value) {
        auto* widget = form()->findChild<QWidget*>(value.key());
        if (auto* spin = qobject_cast<QSpinBox*>(widget))
            spin->setValue(value->toInt());
        else if (auto* combo = qobject_cast<QComboBox*>(widget))
            combo->setCurrentText(value->toString());
        else if (auto* text = qobject_cast<QTextEdit*>(widget))
            text->setPlainText(value->toString());
        else
            dynamic_cast<QLineEdit&>(*widget).setText(value->toString());
    }
}

QVariant FiltersTest::value(const QString& key) const {
    const auto* widget = form()->findChild<QWidget*>(key);
    if (const auto* spin = qobject_cast<const QSpinBox*>(widget))
        return spin->value();
    if (const auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->currentText();
    if (const auto* text = qobject_cast<const QTextEdit*>(widget))
        return text->toPlainText();
    return dynamic_cast<const QLineEdit&>(*widget).text();
}

Values FiltersTest::values() const {
    Values all;
    for (const char* key :
         {"Entity", "InputDataWidth", "OutputDataWidth", "TapCount", "DSPCount", "SaturationStage", "CoefficientWidth",
          "CoefficientMode", "CoefficientCount", "Coefficients", "ToBeTruncated", "ClkAux1Pattern"}) {
        if (form()->findChild<QWidget*>(key))
            all[key] = value(key);
    }
    return all;
}

/// The text of the help label beside an editor; empty when there is none.
QString FiltersTest::help(const char* key) const {
    auto* grid = qobject_cast<QGridLayout*>(form()->layout());
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    grid->getItemPosition(grid->indexOf(editor<QWidget>(key)), &row, &column, &rowSpan, &columnSpan);
    QLayoutItem* item = grid->itemAtPosition(row, 2);
    return item ? dynamic_cast<Velmora::HelpLabel&>(*item->widget()).text() : QString();
}

void FiltersTest::coefficientLists_data() {
    const TestTable<QString, QStringList> table("text", "list");
    table.row("all separators", "1;2,3\n\n4", {"1", "2", "3", "4"});
    table.row("white space is collapsed", " 1 \t;\u00a0-2\u00a0,x \"0f\"", {"1", "-2", "x \"0f\""});
    table.row("nothing", "", {});
    table.row("blanks and separators only", " ;, \n\t;\u2003,", {});
    table.row("what a piece says does not matter", "abc, 1 2", {"abc", "1 2"});
}

void FiltersTest::coefficientLists() {
    QFETCH(QString, text);
    QStringList list;
    for (const std::string& piece : Velmora::parseCoefficients(text.toStdString()))
        list += QString::fromStdString(piece);
    QTEST(list, "list");
}

void FiltersTest::coefficientAggregates_data() {
    const TestTable<QString, int, QString> table("text", "width", "aggregate");
    table.row("decimal", "45, 42", 10, R"((x"02d", x"02a"))");
    table.row("signs", "-1, +7, -123", 12, R"((x"fff", x"007", x"f85"))");
    table.row("literals stay as typed", R"(X"0F1f", 1, x"1")", 8, R"((X"0F1f", x"01", x"1"))");
    table.row("widths of whole digits", "1", 8, R"((x"01"))");
    table.row("width 9 takes three digits", "1", 9, R"((x"001"))");
    table.row("width 24", "-8388608, 8388607", 24, R"((x"800000", x"7fffff"))");
    table.row("too high", "256", 8, "Value too high for specified width");
    for (const char* bad :
         {"abc", "1.5", "0x1F", "1 2", "x\"0g\"", "+", "-", "+-1", "--1", "99999999999", "1e3", "x 1"})
        table.row(bad, bad, 8, QStringLiteral("Invalid coefficient: ") + bad);
}

void FiltersTest::coefficientAggregates() {
    QFETCH(QString, text);
    QFETCH(int, width);
    const unsigned long digits = Velmora::normalizedCoefficientWidth(static_cast<unsigned long>(width));
    QString result;
    try {
        const auto list = Velmora::parseCoefficients(text.toStdString());
        result = QString::fromStdString(Velmora::renderCoefficients(list, digits, caller));
    } catch (const Brindle::Fatal& exception) {
        result = exception.what();
        if (!exception.getField("coefficient").empty()) {
            result += QStringLiteral(": ") + QString::fromStdString(exception.getField("coefficient"));
            QCOMPARE(exception.getLocation(), caller);
        }
    }
    QTEST(result, "aggregate");
}

/// One row of a form as the user sees it: label, key, help, and the range of a spin box or the items of a combo box.
#define ROW(label, key, helpText, choices) QStringList({label, key, helpText, choices})

namespace {

QList<QStringList> rowsOf(const QWidget* form) {
    QList<QStringList> rows;
    auto* grid = qobject_cast<QGridLayout*>(form->layout());
    for (int row = 0; row < grid->rowCount(); ++row) {
        const QLayoutItem* item = grid->itemAtPosition(row, 0);
        auto* label = item ? qobject_cast<QLabel*>(const_cast<QLayoutItem*>(item)->widget()) : nullptr;
        if (!label)
            continue;
        QWidget* editor = grid->itemAtPosition(row, 1)->widget();
        QLayoutItem* helpItem = grid->itemAtPosition(row, 2);
        QString choices;
        if (const auto* spin = qobject_cast<QSpinBox*>(editor))
            choices = QStringLiteral("%1..%2").arg(spin->minimum()).arg(spin->maximum());
        if (const auto* combo = qobject_cast<QComboBox*>(editor)) {
            for (int index = 0; index < combo->count(); ++index)
                choices += combo->itemText(index) + ";";
        }
        rows += ROW(label->text(), editor->objectName(),
                    helpItem ? dynamic_cast<QLabel&>(*helpItem->widget()).text() : QString(), choices);
        if (label->buddy() != editor)
            rows += ROW("no buddy", label->text(), "", "");
    }
    return rows;
}

} // namespace

void FiltersTest::macRows() {
    open(mac);
    const QList<QStringList> expected{
        ROW("Entity name", "Entity", "", ""),
        ROW("Input Data width", "InputDataWidth", "Range 1 to 18.", "1..18"),
        ROW("Output Data width", "OutputDataWidth", "Range 1 to 16.", "1..16"),
        ROW("Tap count", "TapCount", "Range 4 to 160.", "4..160"),
        ROW("DSP count", "DSPCount", "Range 1 to 20.", "1..20"),
        ROW("Saturation stage", "SaturationStage", "", "Enable;Disable;"),
        ROW("Coefficient width", "CoefficientWidth", "Range 1 to 18.", "1..18"),
        ROW("Coefficients", "Coefficients", "List of coefficients separed by ';', ',' or carry return.", ""),
        ROW("LSB To Be Truncated", "ToBeTruncated", "Number of bits to be truncated. Range 0 to 50.", "0..50"),
        ROW("Auxiliary clock WFG pattern", "ClkAux1Pattern", "Optional.<br />Pattern of the auxiliary clock (16 bits).",
            "")};
    QCOMPARE(rowsOf(form()), expected);
}

void FiltersTest::streamingRows() {
    QFETCH(Kind, kind);
    open(kind);
    const QString widest = QString::number(kind.widestInput);
    const QList<QStringList> expected{
        ROW("Entity name", "Entity", "", ""),
        ROW("Input Data width", "InputDataWidth", "Range 8 to " + widest + ".", "8.." + widest),
        ROW("Output Data width", "OutputDataWidth", "Range 8 to 50.", "8..50"),
        ROW("Coefficient width", "CoefficientWidth", "Range 8 to 24.", "8..24"),
        ROW("Coefficient mode", "CoefficientMode", "", "Constant;Input;"),
        ROW("Coefficient count", "CoefficientCount", "Deduced from the amount of coefficients specified.", "3..56"),
        ROW("Coefficients", "Coefficients",
            "List of coefficients separed by ';', ',' or carry return.\n\nE.g.: 45, 42, 34, 78\n\n"
            "E.g.: x\"F1F\", x\"AE7\", x\"B8C\"",
            ""),
        ROW("LSB To Be Truncated", "ToBeTruncated", "Number of bits to be truncated. Range 0 to 36.", "0..36")};
    QCOMPARE(rowsOf(form()), expected);
}

void FiltersTest::firstStartShowsMinimums() {
    QFETCH(Kind, kind);
    open(kind);
    const Values macValues{{"Entity", ""},          {"InputDataWidth", 1}, {"OutputDataWidth", 1},
                           {"TapCount", 4},         {"DSPCount", 1},       {"SaturationStage", "Enable"},
                           {"CoefficientWidth", 1}, {"Coefficients", ""},  {"ToBeTruncated", 0},
                           {"ClkAux1Pattern", ""}};
    const Values streamingValues{{"Entity", ""},          {"InputDataWidth", 8}, {"OutputDataWidth", 8},
                                 {"CoefficientWidth", 8}, {"Coefficients", ""},  {"CoefficientMode", "Constant"},
                                 {"CoefficientCount", 3}, {"ToBeTruncated", 0}};
    QCOMPARE(values(), kind.className == mac.className ? macValues : streamingValues);
}

void FiltersTest::resetGivesTheResetValues() {
    QFETCH(Kind, kind);
    open(kind);
    const Values common{{"Entity", "fir"},        {"InputDataWidth", 11},   {"OutputDataWidth", 12},
                        {"CoefficientWidth", 13}, {"Coefficients", "1, 2"}, {"ToBeTruncated", 14}};
    set(common);
    Values expected{{"Entity", ""},          {"InputDataWidth", 8}, {"OutputDataWidth", 8},
                    {"CoefficientWidth", 8}, {"Coefficients", ""},  {"ToBeTruncated", 0}};
    if (kind.className == mac.className) {
        set({{"TapCount", 9}, {"DSPCount", 9}, {"SaturationStage", "Disable"}, {"ClkAux1Pattern", "1010"}});
        expected["TapCount"] = 4;
        expected["DSPCount"] = 1;
        expected["SaturationStage"] = "Disable"; // is left alone
        expected["ClkAux1Pattern"] = "";
    } else {
        set({{"CoefficientMode", "Input"}, {"CoefficientCount", 9}});
        expected["CoefficientMode"] = "Constant";
        expected["CoefficientCount"] = 3;
    }
    press("Reset");
    QCOMPARE(values(), expected);
}

void FiltersTest::valuesAreKept() {
    QFETCH(Kind, kind);
    open(kind);
    set({{"Entity", "fir"},
         {"InputDataWidth", 11},
         {"OutputDataWidth", 12},
         {"CoefficientWidth", 13},
         {"Coefficients", "1,\n2"},
         {"ToBeTruncated", 14}});
    if (kind.className == mac.className)
        set({{"TapCount", 9}, {"DSPCount", 7}, {"SaturationStage", "Disable"}, {"ClkAux1Pattern", "1010"}});
    else
        set({{"CoefficientMode", "Input"}, {"CoefficientCount", 9}});
    const Values before = values();
    open(kind);
    QCOMPARE(values(), before);

    QSettings settings;
    settings.beginGroup(kind.className);
    QStringList keys = before.keys();
    QCOMPARE(settings.childKeys(), keys);
    QCOMPARE(settings.value(kind.className == mac.className ? "SaturationStage" : "CoefficientMode").toInt(), 1);
}

void FiltersTest::everyStoredValueOpens() {
    QFETCH(Kind, kind);
    open(kind);
    const Values minimums = values();
    for (const QVariant& rubbish :
         {QVariant(QStringList{"a", "b"}), QVariant("seven"), QVariant(-5), QVariant(1000000),
          QVariant(QByteArray(10'000, '\xff')), QVariant("3000000000"), QVariant("4294967297")}) {
        {
            QSettings settings;
            settings.beginGroup(kind.className);
            for (const QString& key : minimums.keys())
                settings.setValue(key, rubbish);
        }
        _page.reset();
        {
            QSettings settings; // what the form has stored at its end
            settings.beginGroup(kind.className);
            for (const QString& key : minimums.keys())
                settings.setValue(key, rubbish);
        }
        open(kind);
        QVERIFY(form());
        QCOMPARE(value(kind.className == mac.className ? "SaturationStage" : "CoefficientMode"),
                 minimums.value(kind.className == mac.className ? "SaturationStage" : "CoefficientMode"));
    }
}

void FiltersTest::modeEnablesFields() {
    QFETCH(Kind, kind);
    open(kind);
    auto* count = editor<QSpinBox>("CoefficientCount");
    auto* coefficients = editor<QTextEdit>("Coefficients");
    coefficients->setPlainText("1, 2, 3");
    QVERIFY(!count->isEnabled());
    QVERIFY(coefficients->isEnabled());

    editor<QComboBox>("CoefficientMode")->setCurrentText("Input");
    QVERIFY(count->isEnabled());
    QVERIFY(!coefficients->isEnabled());
    QCOMPARE(coefficients->toPlainText(), QStringLiteral("1, 2, 3"));
    QCOMPARE(help("Coefficients"), QStringLiteral("Not available when coefficients are inputs."));
    QCOMPARE(help("CoefficientCount"), QStringLiteral("Range 3 to 56."));
    open(kind); // the stored mode has the same effect
    QVERIFY(editor<QSpinBox>("CoefficientCount")->isEnabled());
    QVERIFY(!editor<QTextEdit>("Coefficients")->isEnabled());

    editor<QComboBox>("CoefficientMode")->setCurrentText("Constant");
    QVERIFY(!editor<QSpinBox>("CoefficientCount")->isEnabled());
    QCOMPARE(help("CoefficientCount"), QStringLiteral("Deduced from the amount of coefficients specified."));
    bool invoked = false;
    QVERIFY_EXCEPTION_THROWN(
        invoked = QMetaObject::invokeMethod(form(), "onCoefficientModeChange", Q_ARG(QString, "Both")), Brindle::Fatal);
    QVERIFY(!invoked);
}

void FiltersTest::checks_data() {
    TestTable<Kind, Values, QString>("kind", "values", "message");
    const auto list = [](int count) { return QStringList(QVector<QString>(count, "1").toList()).join(','); };
    const auto row = [](const char* tag, const Kind& kind, Values values, const char* message) {
        if (!values.contains("Entity"))
            values["Entity"] = "fir";
        QTest::addRow("%s: %s", kind.className, tag) << kind << values << QString(message);
    };
    const char* noEntity = "Entity name not specified!";
    const char* noCoefficients = "Coefficients not defined!";
    const char* tooWide = "'Input Data width' or 'Coefficient width' should be 18 bit or less.";
    const char* tooLong = "'LSB To Be Truncated' + 'Output Data width' should be inferior to 50.";
    const char* count = "Coefficient count should be between 3 and 56.";
    const char* odd = "For a symmetric filter, coefficient count should be odd.";

    row("everything wrong", mac,
        {{"Entity", ""}, {"OutputDataWidth", 16}, {"ToBeTruncated", 35}, {"ClkAux1Pattern", "2"}}, noEntity);
    row("no list", mac, {{"Coefficients", " ,;\n"}, {"OutputDataWidth", 16}, {"ToBeTruncated", 35}}, noCoefficients);
    row("sum 51", mac, {{"Coefficients", "1"}, {"OutputDataWidth", 16}, {"ToBeTruncated", 35}}, tooLong);
    row("sum 50", mac, {{"Coefficients", "1,2,3"}, {"OutputDataWidth", 16}, {"ToBeTruncated", 34}}, "");
    row("two coefficients", mac, {{"Coefficients", "1,2"}, {"ClkAux1Pattern", "2"}},
        "Coefficient count should be greater than 2.");
    row("three coefficients", mac, {{"Coefficients", "1,2,3"}}, "");
    row("pattern", mac, {{"Coefficients", "1,2,3"}, {"ClkAux1Pattern", "1010101010101010"}}, "");
    for (const char* pattern : {"10101010101010101", "101010101010101", "1010101010101012", "101010101010101 "})
        row(pattern, mac, {{"Coefficients", "1,2,3"}, {"ClkAux1Pattern", pattern}}, "Invalid auxiliary clock pattern.");

    for (const Kind& kind : streamingKinds) {
        row("no entity", kind, {{"Entity", ""}}, noEntity);
        row("no list", kind, {{"OutputDataWidth", 50}, {"ToBeTruncated", 1}}, noCoefficients);
        row("sum 51", kind, {{"Coefficients", "1"}, {"OutputDataWidth", 50}, {"ToBeTruncated", 1}}, tooLong);
        row("sum 50", kind, {{"Coefficients", list(4)}, {"OutputDataWidth", 14}, {"ToBeTruncated", 36}}, "");
        row("2", kind, {{"Coefficients", list(2)}}, count);
        row("57", kind, {{"Coefficients", list(57)}}, count);
        row("56", kind, {{"Coefficients", list(56)}}, "");
        row("4", kind, {{"Coefficients", list(4)}}, "");
        row("one wide", kind, {{"Coefficients", list(4)}, {"InputDataWidth", 18}, {"CoefficientWidth", 24}}, "");
        row("input needs no list", kind, {{"CoefficientMode", "Input"}, {"CoefficientCount", 8}}, "");
        const bool isSymmetric = kind.className == symmetric.className;
        row("3", kind, {{"Coefficients", list(3)}}, isSymmetric ? odd : "");
        row("input of 7", kind, {{"CoefficientMode", "Input"}, {"CoefficientCount", 7}}, isSymmetric ? odd : "");
    }
    row("both wide", transpose,
        {{"Coefficients", "1"},
         {"InputDataWidth", 20},
         {"CoefficientWidth", 20},
         {"OutputDataWidth", 50},
         {"ToBeTruncated", 1}},
        tooWide);
    row("both just too wide", transpose, {{"Coefficients", list(3)}, {"InputDataWidth", 19}, {"CoefficientWidth", 19}},
        tooWide);
    row("input wide only", transpose, {{"Coefficients", list(3)}, {"InputDataWidth", 24}, {"CoefficientWidth", 18}},
        "");
}

void FiltersTest::checks() {
    QFETCH(Kind, kind);
    QFETCH(Values, values);
    QFETCH(QString, message);
    open(kind);
    set(values);
    ConsoleRecorder recorder;
    const bool passed = withLeaf(form(), [](const auto& leaf) { return leaf.isFullyConfigured(); });
    QCOMPARE(recorder.lines(), message.isEmpty() ? QStringList() : QStringList("E: " + message));
    QCOMPARE(passed, message.isEmpty());
}

void FiltersTest::statements_data() {
    const TestTable<Kind, Values, QString> table("kind", "values", "statement");
    const Values widths{{"Entity", "fir"},        {"InputDataWidth", 9}, {"OutputDataWidth", 10},
                        {"CoefficientWidth", 11}, {"ToBeTruncated", 12}, {"Coefficients", "1, x\"F1F\"; -1"}};
    const auto with = [&widths](const Values& more) {
        Values all = widths;
        for (auto value = more.begin(); value != more.end(); ++value)
            all[value.key()] = *value;
        return all;
    };
    const QString common = "'%%INPUT_DATA_WIDTH%%': '9', '%%INPUT_DATA_WIDTH-1%%': '8', '%%OUTPUT_DATA_WIDTH%%': '10', "
                           "'%%OUTPUT_DATA_WIDTH-1%%': '9', '%%TO_BE_TRUNCATED%%': '12', '%%COEF_WIDTH%%': '11', "
                           "'%%DATE%%': 'DATE'}";
    const QString macStart = "argDict = {  '%%COEFS%%': '(x\"001\", x\"F1F\", x\"fff\")', '%%N_TAPS%%': '33', ";
    const QString macEnd = "'%%ENTITY_NAME%%': 'fir', '%%APPLICATION%%': 'Velmora', '%%DSP_COUNT%%': '5', " + common;
    table.row("mac", mac, with({{"TapCount", 33}, {"DSPCount", 5}}),
              macStart + "'%%CLK_AUX1_PATTERN%%': '1000000000000000', '%%SATURATION_STAGE%%': 'true', " + macEnd);
    table.row("mac with pattern, without saturation", mac,
              with({{"TapCount", 33},
                    {"DSPCount", 5},
                    {"SaturationStage", "Disable"},
                    {"ClkAux1Pattern", "1100110011001100"}}),
              macStart + "'%%CLK_AUX1_PATTERN%%': '1100110011001100', '%%SATURATION_STAGE%%': 'false', " + macEnd);
    for (const Kind& kind : streamingKinds) {
        QTest::addRow("%s, constant", kind.className)
            << kind << widths
            << "argDict = {  '%%N_TAPS%%': '3', '%%ENTITY_NAME%%': 'fir', '%%COEFS_PKG_HEXA_CONSTANT%%': "
               "'(x\"001\", x\"F1F\", x\"fff\")', '%%APPLICATION%%': 'Velmora', '%%COEF_ARE_INPUT_SIGNALS%%': "
               "'false', " +
                   common;
        QTest::addRow("%s, input", kind.className)
            << kind << with({{"CoefficientMode", "Input"}, {"CoefficientCount", 20}})
            << "argDict = {  '%%N_TAPS%%': '20', '%%ENTITY_NAME%%': 'fir', '%%COEFS_PKG_HEXA_CONSTANT%%': "
               "'(others => (others => \\'0\\'))', '%%APPLICATION%%': 'Velmora', '%%COEF_ARE_INPUT_SIGNALS%%': "
               "'true', " +
                   common;
    }
}

void FiltersTest::statements() {
    QFETCH(Kind, kind);
    QFETCH(Values, values);
    open(kind);
    set(values);
    QString found = statement();
    found.replace(QRegularExpression("'\\d\\d/\\d\\d/\\d{4} - \\d\\d:\\d\\d'"), "'DATE'");
    QTEST(found, "statement");
}

void FiltersTest::argumentErrors_data() {
    TestTable<Kind, Values, QString>("kind", "values", "message");
    for (const Kind& kind : streamingKinds) {
        QTest::addRow("%s, count", kind.className)
            << kind << Values{{"Coefficients", "1"}} << "Number of coefficients must be in range 3 to 56";
    }
    for (const Kind& kind : allKinds) {
        QTest::addRow("%s, entity", kind.className)
            << kind << Values{{"Coefficients", "1,2,3,4"}, {"Entity", "x'y"}} << "Unsupported character in value";
        QTest::addRow("%s, coefficient", kind.className)
            << kind << Values{{"Coefficients", "1,2,3,four"}} << "Invalid coefficient";
    }
}

void FiltersTest::argumentErrors() {
    QFETCH(Kind, kind);
    QFETCH(Values, values);
    open(kind);
    set(values);
    try {
        statement();
        QFAIL("nothing thrown");
    } catch (const Brindle::Error& exception) {
        QTEST(QString(exception.what()), "message");
        QCOMPARE(std::string(exception.getLocation().file), std::string("src/bin/velmora/") + kind.className);
    }
}

void FiltersTest::generates() {
    QFETCH(Kind, kind);
    open(kind);
    set({{"Entity", "fir"}, {"CoefficientWidth", 8}, {"Coefficients", "1,2,3,4"}});
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(_dialog.asked, QStringList({"Choose a file name", QDir::currentPath() + "/fir.vhd", "VHDL (*.vhd)"}));
    QCOMPARE(recorder.lines(), QStringList({kind.title, "  Generating done"}));
    const QByteArray output = readFile(_dialog.answer);
    QVERIFY(output.contains("%%ENTITY_NAME%%=fir\n"));
    QVERIFY(output.contains("(x\"01\", x\"02\", x\"03\", x\"04\")\n"));
    QVERIFY(output.endsWith("\n"));

    const QString key = QStringLiteral("%1/Filepath").arg(kind.className);
    QCOMPARE(QSettings().value(key).toString(), _dialog.answer);
    set({{"Entity", "other"}});
    press("Generate");
    QCOMPARE(_dialog.asked.at(1), _dialog.answer);
}

void FiltersTest::inputModeSendsTheLiteral() {
    for (const Kind& kind : streamingKinds) {
        open(kind);
        set({{"Entity", "fir"}, {"CoefficientMode", "Input"}, {"CoefficientCount", 8}});
        press("Generate");
        QVERIFY(readFile(_dialog.answer).contains("%%COEFS_PKG_HEXA_CONSTANT%%=(others => (others => '0'))\n"));
    }
}

void FiltersTest::refusals_data() {
    const TestTable<QByteArray, Values, QStringList, QByteArray> table("script", "values", "told", "output");
    const Values good{{"Entity", "fir"}, {"Coefficients", "1,2,3,4"}};
    const QString failed = "  Generating failed";
    table.row("check fails: the old file stays", echo, Values{{"Entity", ""}},
              {"E:   Entity name not specified!", failed}, "old");
    table.row("script raises: the file is empty", "raise ValueError('x')", good,
              {"E:   Processing aborted [Should not be here]", failed}, {});
    table.row(
        "script's own check: comment lines",
        QByteArray(
            "def generate(argDict):\n  printError('Coefficients are odd.')\n  return '-- Generation failed: x\\n'\n"),
        good,
        {"E:   Coefficients are odd.", "E:   Failed to generate the IP, please contact the provider.",
         "  Generating done"},
        "-- Generation failed: x\n\n");
    table.row("wrong type", "def generate(argDict): return u'x'", good,
              {"E:   Processing aborted ['text' is not a string]", failed}, {});
    table.row("markers", "def generate(argDict): return '`protect end'", good,
              {"E:   Processing aborted [No \"`protect begin\" found]", failed}, {});
    table.row("NUL cuts the text", QByteArray("def generate(argDict): return 'a\\0b'"), good, {"  Generating done"},
              "a\n");
    table.row("bytes pass as they are", "def generate(argDict): return '\\xe9\\xff\\r'", good, {"  Generating done"},
              "\xe9\xff\r\n");
    table.row("invalid coefficient keeps its field", echo, Values{{"Entity", "fir"}, {"Coefficients", "1,2,3,0x1F"}},
              {"E:   Processing aborted [Invalid coefficient] (coefficient: 0x1F)", failed}, {});
}

void FiltersTest::refusals() {
    QFETCH(QByteArray, script);
    QFETCH(Values, values);
    QFETCH(QStringList, told);
    open(symmetric, script);
    _prefix->write("out.vhd", "old");
    set(values);
    ConsoleRecorder recorder;
    press("Generate");
    const QStringList lines = recorder.lines().mid(1);
    QCOMPARE(lines.mid(lines.size() - told.size()), told); // a trace may stand in front
    QTEST(readFile(_dialog.answer), "output");
}

void FiltersTest::cancelledDialogDoesNothing() {
    open(mac);
    _dialog.answer.clear();
    ConsoleRecorder recorder;
    press("Generate");
    QCOMPARE(recorder.lines(), QStringList());
    QVERIFY(!QSettings().contains("MacFirLeaf/Filepath"));
}

VELMORA_TEST_MAIN(FiltersTest)
#include "tst_filters.moc"
