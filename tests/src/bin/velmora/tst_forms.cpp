#include <support/FormFixture.h>
#include <support/TestMain.h>
#include <support/TestTable.h>

#include <velmora/ips/scopes/ScopeLeaf.h>
#include <velmora/ips/scopes/StartupScopeLeaf.h>
#include <velmora/ips/serdes/SERDESLeaf.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/widgets/FoldWidget.h>

#include <Brindle/core/Exception.h>
#include <Quillon/PadType.h>

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSettings>
#include <QSpinBox>
#include <QTextEdit>
#include <QToolButton>

using FormText::parse;
using FormText::Values;

namespace {

/// What sets one form apart. Values are texts by the editors' names, as FormText writes them.
struct Kind {
    QString className;
    QString title;    ///< Of a generation.
    QString failed;   ///< The last line of one that threw.
    QStringList rows; ///< As FormText gives them; those of a section behind its title.
    QString first;    ///< Shown at the first start.
    QString others;   ///< Others for every field, no number at an end of its range.
    QString unreset;  ///< Of those, what Reset leaves as it is.
    QString stored;   ///< Where the settings hold something else than the text of the other values: indexes.
    QString good;     ///< What the check asks for, beside the reset values.
};

QStringList filterRows(const QString& afterWidths, int widestInput) {
    return QStringList{"Entity name|Entity||",
                       QString("Input Data width|InputDataWidth|Range 8 to %1.|8..%1").arg(widestInput),
                       "Output Data width|OutputDataWidth|Range 8 to 50.|8..50",
                       "Coefficient width|CoefficientWidth|Range 8 to 24.|8..24"} +
           afterWidths.split('\\');
}

Kind streamingFilter(const char* className, const char* title, int widestInput) {
    return {className,
            title,
            "failed",
            filterRows("Coefficient mode|CoefficientMode||Constant,Input\\Coefficient count|CoefficientCount|Deduced "
                       "from the amount of coefficients specified.|3..56\\Coefficients|Coefficients|List of "
                       "coefficients separed by ';', ',' or carry return.\n\nE.g.: 45, 42, 34, 78\n\nE.g.: x\"F1F\", "
                       "x\"AE7\", x\"B8C\"|\\LSB To Be Truncated|ToBeTruncated|Number of bits to be truncated. Range 0 "
                       "to 36.|0..36",
                       widestInput),
            "Entity=;InputDataWidth=8;OutputDataWidth=8;CoefficientWidth=8;CoefficientMode=Constant;"
            "CoefficientCount=3;Coefficients=;ToBeTruncated=0",
            "Entity=fir;InputDataWidth=9;OutputDataWidth=10;CoefficientWidth=11;CoefficientMode=Input;"
            "CoefficientCount=20;Coefficients=1, x\"F1F\"\n-1;ToBeTruncated=12",
            "",
            "CoefficientMode=1",
            "Entity=fir;Coefficients=1,2,3,4"};
}

QString padTypes() {
    QStringList names;
    for (const Quillon::PadType& padType : Quillon::PadType::getConcretes())
        names += padType.getName();
    return names.join(',');
}

const QString alias = "|The alias is not mandatory,\nit is only an aid to recognize easily a net.|";
const QString options = "||Enable,Disable";
const QString sum = "|Range 0 to 30.\nThe sum of SER & DES must be lower or equal to 30.|0..30";
const QString depths = "Capture depth|CaptureDepth||2K=2048,4K=4096,6K=6144,12K=12288,24K=24576,48K=49152";
const QString pattern =
    "Auxiliary clock WFG pattern|ClkAux1Pattern|Optional.<br />Pattern of the auxiliary clock (16 bits).|";
const QString training = "|Length must match data size.|";

/// By the name of the IP.
const QMap<QString, Kind> kinds{
    {"Mac fir",
     {"MacFirLeaf", "Generating filter mac", "failed",
      QStringList{"Entity name|Entity||", "Input Data width|InputDataWidth|Range 1 to 18.|1..18",
                  "Output Data width|OutputDataWidth|Range 1 to 16.|1..16", "Tap count|TapCount|Range 4 to 160.|4..160",
                  "DSP count|DSPCount|Range 1 to 20.|1..20", "Saturation stage|SaturationStage" + options,
                  "Coefficient width|CoefficientWidth|Range 1 to 18.|1..18",
                  "Coefficients|Coefficients|List of coefficients separed by ';', ',' or carry return.|",
                  "LSB To Be Truncated|ToBeTruncated|Number of bits to be truncated. Range 0 to 50.|0..50", pattern},
      "Entity=;InputDataWidth=1;OutputDataWidth=1;TapCount=4;DSPCount=1;SaturationStage=Enable;CoefficientWidth=1;"
      "Coefficients=;ToBeTruncated=0;ClkAux1Pattern=",
      "Entity=fir;InputDataWidth=9;OutputDataWidth=10;TapCount=33;DSPCount=5;SaturationStage=Disable;"
      "CoefficientWidth=11;Coefficients=1, x\"F1F\"\n-1;ToBeTruncated=12;ClkAux1Pattern=1100110011001100",
      "SaturationStage=Disable", "SaturationStage=1", "Entity=fir;Coefficients=1,2,3,4"}},
    {"Systolic", streamingFilter("SystolicLeaf", "Generating systolic filter", 18)},
    {"Transpose", streamingFilter("TransposeLeaf", "Generating transpose filter", 24)},
    {"Transpose dual", streamingFilter("TransposeDualLeaf", "Generating transpose dual filter", 18)},
    {"Transpose symmetric", streamingFilter("TransposeSymmetricLeaf", "Generating transpose symmetric filter", 18)},
    {"SER/DES",
     {"SERDESLeaf", "Generating Scope", "Failed",
      QStringList{"Entity name|Entity||",
                  "Global parameters",
                  "Parameter's prefix|Prefix||",
                  "Word clock frequency (MHz)|WordClock|Range 20 to 200MHz.|20..200",
                  "Data size|DataSize|Range 3 to 10.|3..10",
                  "SER count|SERCount" + sum,
                  "DES count|DESCount" + sum,
                  "Bank number|BankNumber||02,03,04,05,09,10,11,12",
                  "SER parameters",
                  "Pad type|SER/PadType||" + padTypes(),
                  "Differential|SER/Differential||True,False",
                  "Slew rate|SER/SlewRate||Slow,Medium,Fast",
                  "Output capacity|SER/OutputCapacity||0..100",
                  "Training value|SER/TrainingValue" + training,
                  "none|LocationTableView/SER||",
                  "DES parameters",
                  "Pad type|DES/PadType||" + padTypes(),
                  "Differential|DES/Differential||True,False",
                  "Termination|DES/Termination||0..100",
                  "Termination reference|DES/TerminationReference||VT,Floating",
                  "Turbo|DES/Turbo||True,False",
                  "Input signal slope|DES/InputSignalSlope||0.5..20",
                  "Training value|DES/TrainingValue" + training,
                  "none|LocationTableView/DES||"},
      "Entity=;Prefix=;WordClock=20;DataSize=3;SERCount=1;DESCount=1;BankNumber=02;SER/PadType=LVDS_2.5V;"
      "SER/Differential=True;SER/SlewRate=Fast;SER/OutputCapacity=0;SER/TrainingValue=;DES/PadType=LVDS_2.5V;"
      "DES/Differential=True;DES/Termination=100;DES/TerminationReference=VT;DES/Turbo=False;"
      "DES/InputSignalSlope=0.5;DES/TrainingValue=",
      "Entity=link;Prefix=lk;WordClock=125;DataSize=4;SERCount=2;DESCount=3;BankNumber=10;SER/PadType=SSTL_1.8V_II;"
      "SER/Differential=False;SER/SlewRate=Medium;SER/OutputCapacity=12;SER/TrainingValue=1010;"
      "DES/PadType=LVCMOS_1.8V;DES/Differential=False;DES/Termination=50;DES/TerminationReference=Floating;"
      "DES/Turbo=True;DES/InputSignalSlope=7.5;DES/TrainingValue=0101",
      "SER/TrainingValue=1010;DES/TrainingValue=0101",
      "BankNumber=5;SER/Differential=1;SER/SlewRate=1;DES/Differential=1;DES/TerminationReference=1;DES/Turbo=0",
      "Entity=link;Prefix=lk;SER/TrainingValue=101;DES/TrainingValue=010;LocationTableView/SER 1=01P;"
      "LocationTableView/DES 1=01N"}},
    {"Scope",
     {"ScopeLeaf", "Generating Scope", "Failed",
      QStringList{"Entity name|Entity||", "Capture configuration", "Input line count|InputCount|Range 2 to 240.|2..240",
                  depths, "Capture mode|CaptureMode||Pre-trigger=pre_trigger_enable,Multiple windows=multiple_windows",
                  "Window capture length|WindowCaptureLength|Range 64 to 2048.|64..2048",
                  "Pre-trigger samples|PreTriggerSamples|Range 1 to 2048.|1..2048",
                  "User data delay|UserDataDelay|Range 0 to 2.|0..2", "Store trigger pulse|StoreTrigger" + options,
                  "Store window number|StoreWindow" + options, "Trigger configuration",
                  "Trigger line count|TriggerCount|Range 1 to 32.|1..32",
                  "Trigger mode|TriggerMode||Basic=basic,Basic & Edges=basic_and_edges",
                  "Multiple level trigger|MultipleLevelTrigger" + options, "none|TriggerTableView" + alias},
      "Entity=;InputCount=2;CaptureDepth=2K;CaptureMode=Pre-trigger;WindowCaptureLength=64;PreTriggerSamples=1;"
      "UserDataDelay=0;StoreTrigger=Disable;StoreWindow=Disable;TriggerCount=1;TriggerMode=Basic;"
      "MultipleLevelTrigger=Disable",
      "Entity=la;InputCount=17;CaptureDepth=6K;CaptureMode=Multiple windows;WindowCaptureLength=100;"
      "PreTriggerSamples=33;UserDataDelay=1;StoreTrigger=Enable;StoreWindow=Enable;TriggerCount=3;"
      "TriggerMode=Basic & Edges;MultipleLevelTrigger=Enable",
      "", "CaptureDepth=2;CaptureMode=1;TriggerMode=1;MultipleLevelTrigger=0;StoreTrigger=0;StoreWindow=0",
      "Entity=la"}},
    {"Startup Scope",
     {"StartupScopeLeaf", "Generating Scope", "Failed",
      QStringList{"Entity name|Entity||", "Capture configuration", "Input line count|InputCount|Range 2 to 240.|2..240",
                  depths, "Pre-trigger samples|PreTriggerSamples|Range 1 to 1000.|1..1000", "Trigger configuration",
                  "Trigger line count|TriggerCount|Range 1 to 4.|1..4", "none|StartupTriggerTableView" + alias},
      "Entity=;InputCount=2;CaptureDepth=2K;PreTriggerSamples=1;TriggerCount=1",
      "Entity=la;InputCount=17;CaptureDepth=48K;PreTriggerSamples=33;TriggerCount=3", "", "CaptureDepth=5",
      "Entity=la"}},
    {"APB slave to serial master",
     {"APBToSPWLeaf", "", "", QStringList{"Entity name|Entity||"}, "Entity=", "Entity=bridge", "", "", ""}}};

const QStringList streamingFilters{"Systolic", "Transpose", "Transpose dual", "Transpose symmetric"};

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

/// What the nine forms have in common: rows, values that are reset and kept, checks, arguments, generation.
class FormsTest : public QObject, private FormFixture {
    Q_OBJECT

private:
    static void addKinds();
    void openKind() {
        QFETCH(QString, ip);
        open(ip);
    }
    Kind kind() const { return kinds.value(QTest::currentDataTag()); }
    void fillTables() const;
    /// Loads the settings anew as the leaf itself does it.
    void load() const;
    void changeMarked(const QString& mark) const;

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void rows_data() { addKinds(); }
    void rows();
    void resets_data() { addKinds(); }
    void resets();
    void valuesAreKept_data() { addKinds(); }
    void valuesAreKept();
    void everyStoredValueOpens_data() { addKinds(); }
    void everyStoredValueOpens();
    void coefficientModeEnables();
    void captureModeEnables();
    void checks_data();
    void checks();
    void markGoesWithTheNextCheck();
    void statements_data();
    void statements();
    void generates_data() { addKinds(); }
    void generates();
    void goWithTheirPages_data() { addKinds(); }
    void goWithTheirPages();
    void refusedArguments_data();
    void refusedArguments();
    void countsBeyondTheCheck();
    void oddResults_data();
    void oddResults();
};

void FormsTest::addKinds() {
    const TestTable<QString> table("ip");
    for (const QString& ip : kinds.keys())
        table.row(qPrintable(ip), ip);
}

/// One row more than are shown.
void FormsTest::fillTables() const {
    for (const Velmora::FormTable& table : page().getForm()->getTables()) {
        const QString name = table.view->objectName();
        const bool hasLocations = name.startsWith("Location");
        set({{name + " 1", hasLocations ? "03P,03N,04P,15N" : "clk,,\"x; y\",hidden"}});
        if (name != "LocationTableView/DES")
            set({{name + " 2", hasLocations ? "7,12,5,63" : "1,0,1,0"}});
    }
}

void FormsTest::load() const {
    if (auto* serdes = editor<Velmora::SERDESLeaf>("SERDESLeaf"))
        serdes->load();
    else if (auto* scope = editor<Velmora::ScopeLeaf>("ScopeLeaf"))
        scope->load();
    else if (auto* startupScope = editor<Velmora::StartupScopeLeaf>("StartupScopeLeaf"))
        startupScope->load();
    else
        page().getForm()->load();
}

void FormsTest::rows() {
    openKind();
    QStringList found = FormText::rowsOf(form());
    const auto sections = page().findChildren<Velmora::FoldWidget*>();
    if (!sections.isEmpty())
        found = found.mid(0, 1);
    for (const auto* section : sections) {
        found += section->findChild<QToolButton*>()->text();
        found += FormText::rowsOf(section->findChild<QSpinBox*>()->parentWidget());
    }
    QCOMPARE(found, kind().rows);
    QCOMPARE(group(), kind().className);
}

void FormsTest::resets() {
    openKind();
    QCOMPARE(values(), parse(kind().first));
    const QStringList initial = cells();
    set(kind().others);
    fillTables();
    press("Reset");
    // The filters show their minimums at the first start, which are the reset values but for the widths of one.
    Values expected = parse(kind().unreset, parse(kind().first));
    if (kind().className == "MacFirLeaf")
        expected = parse("InputDataWidth=8;OutputDataWidth=8;CoefficientWidth=8", expected);
    QCOMPARE(values(), expected);
    QCOMPARE(cells(), initial);
    QVERIFY(!QSettings().contains(kind().className + "/Entity")); // until the form goes
}

void FormsTest::valuesAreKept() {
    openKind();
    set(kind().others);
    fillTables();
    const QStringList filled = cells();
    openKind();
    QCOMPARE(values(), parse(kind().others));
    QCOMPARE(cells(), filled);

    QSettings settings;
    settings.beginGroup(kind().className);
    Values expected = parse(kind().stored, parse(kind().others));
    for (const char* padType : {"SER/PadType", "DES/PadType"}) {
        if (expected.contains(padType)) // the text, or its place in the catalogue of pad types
            expected[padType] = QString::number(editor<QComboBox>(padType)->currentIndex());
    }
    QStringList storedCells;
    Values stored;
    for (const QString& key : settings.allKeys()) {
        if (!key.contains("TableView/"))
            stored[key] = settings.value(key).toString();
    }
    for (const Velmora::FormTable& table : page().getForm()->getTables()) {
        for (int row = 0; row < 32; ++row)
            storedCells +=
                settings.value(QString("%1/%2").arg(table.view->objectName()).arg(row)).toStringList().join('|');
    }
    QCOMPARE(stored, expected);
    QCOMPARE(storedCells, filled);

    settings.remove(QString());
    load(); // what is absent changes nothing, but is empty in the forms without sections
    Values afterwards = parse(kind().others);
    if (page().findChildren<Velmora::FoldWidget*>().isEmpty())
        afterwards = parse(kind().first);
    else if (kind().className == "SERDESLeaf")
        afterwards = parse("SER/PadType=LVDS_2.5V;DES/PadType=LVDS_2.5V", afterwards);
    QCOMPARE(values(), afterwards);
    QCOMPARE(cells(), filled);
}

void FormsTest::everyStoredValueOpens() {
    openKind();
    const QStringList initial = cells();
    openKind(); // which stores the values of the one before
    const QStringList keys = QSettings().allKeys().filter(QRegularExpression("^" + kind().className + "/"));
    const Values first = parse(kind().first);
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
        openKind();
        const auto* slope = editor<QDoubleSpinBox>("DES/InputSignalSlope");
        QVERIFY(!slope || (slope->value() >= 0.5 && slope->value() <= 20));
        const bool isText = rubbish.type() == QVariant::String || rubbish.type() == QVariant::Int;
        for (const QString& name : first.keys()) {
            if (editor<QComboBox>(name) || (!isText && editor<QLineEdit>(name)))
                QCOMPARE(values()[name], first[name]);
        }
        QStringList expected = initial;
        if (rubbish.type() == QVariant::StringList)
            expected.replaceInStrings(QRegularExpression("^(Trig\\d+\\|)\\|"), "\\1b|"); // the alias
        QCOMPARE(cells(), expected);
    }
}

void FormsTest::coefficientModeEnables() {
    for (const QString& ip : streamingFilters) {
        open(ip);
        const auto enabled = [this] {
            return QString("%1 %2")
                .arg(editor<QWidget>("CoefficientCount")->isEnabled())
                .arg(editor<QWidget>("Coefficients")->isEnabled());
        };
        const auto help = [this](int row) { return FormText::rowsOf(form()).at(row).section('|', 2, 2); };
        set("Coefficients=1, 2, 3");
        QCOMPARE(enabled(), "0 1");
        set("CoefficientMode=Input");
        QCOMPARE(enabled(), "1 0");
        QCOMPARE(values()["Coefficients"], "1, 2, 3");
        QCOMPARE(help(6), "Not available when coefficients are inputs.");
        QCOMPARE(help(5), "Range 3 to 56.");
        open(ip); // the stored mode has the same effect
        QCOMPARE(enabled(), "1 0");
        set("CoefficientMode=Constant");
        QCOMPARE(enabled(), "0 1");
        QCOMPARE(help(5), "Deduced from the amount of coefficients specified.");
        bool invoked = false;
        QVERIFY_EXCEPTION_THROWN(
            invoked = QMetaObject::invokeMethod(form(), "onCoefficientModeChange", Q_ARG(QString, "Both")),
            Brindle::Fatal);
        QVERIFY(!invoked);
    }
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
    for (const QString& ip : streamingFilters) {
        const bool isSymmetric = ip == "Transpose symmetric";
        refuse(ip, "Entity=", noEntity, {"Entity"});
        refuse(ip, "Coefficients=;OutputDataWidth=50;ToBeTruncated=1", noCoefficients, {"Coefficients"});
        refuse(ip, list(1) + ";OutputDataWidth=50;ToBeTruncated=1", tooLong, lengths);
        pass(ip, list(4) + ";OutputDataWidth=14;ToBeTruncated=36");
        refuse(ip, list(2), count, {"Coefficients"});
        refuse(ip, list(57), count, {"Coefficients"});
        pass(ip, list(56));
        pass(ip, list(4) + ";InputDataWidth=18;CoefficientWidth=24");
        pass(ip, "Coefficients=;CoefficientMode=Input;CoefficientCount=8");
        refuse(ip, list(3), isSymmetric ? odd : "", isSymmetric ? QStringList("Coefficients") : QStringList());
        refuse(ip, "CoefficientMode=Input;CoefficientCount=7", isSymmetric ? odd : "",
               isSymmetric ? QStringList("CoefficientCount") : QStringList());
    }
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
        set(parse(values, parse(kinds[ip].good)));
        ConsoleRecorder recorder;
        const bool passed = check();
        QCOMPARE(recorder.lines(), message.isEmpty() ? QStringList() : QStringList("E: " + message));
        QCOMPARE(passed, message.isEmpty());
        QCOMPARE(marksOf(*form()), marked);
    };
    verify();
    if (marked.isEmpty())
        return;
    const auto* first = editor<QWidget>(marked.first());
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

void FormsTest::markGoesWithTheNextCheck() {
    open("Mac fir");
    set("Entity=;InputDataWidth=4");
    generate();
    set("InputDataWidth=5;Coefficients=1,2,3"); // other fields than the marked one
    QCOMPARE(marksOf(*form()), QStringList("Entity"));
    set("Entity=x;Coefficients=");
    generate();
    QCOMPARE(marksOf(*form()), QStringList("Coefficients"));
    _dialog.answer = QString();
    generate(); // cancelled, so nothing was checked
    QCOMPARE(marksOf(*form()), QStringList("Coefficients"));
    load();
    QCOMPARE(marksOf(*form()), QStringList());
}

void FormsTest::statements_data() {
    const TestTable<QString, QString, QString> table("ip", "values", "statement"); // statement: from its first key on
    const QString widths = "'%%INPUT_DATA_WIDTH%%': '9', '%%INPUT_DATA_WIDTH-1%%': '8', '%%OUTPUT_DATA_WIDTH%%': '10', "
                           "'%%OUTPUT_DATA_WIDTH-1%%': '9', '%%TO_BE_TRUNCATED%%': '12', '%%COEF_WIDTH%%': '11', ";
    const QString macFilter = "'%%COEFS%%': '(x\"001\", x\"F1F\", x\"fff\")', '%%N_TAPS%%': '33', "
                              "'%%CLK_AUX1_PATTERN%%': '%1', '%%SATURATION_STAGE%%': '%2', '%%ENTITY_NAME%%': 'fir', "
                              "'%%APPLICATION%%': 'Velmora', '%%DSP_COUNT%%': '5', " +
                              widths;
    table.row("Mac fir", "Mac fir", "", QString(macFilter).replace("%1", "1100110011001100").replace("%2", "false"));
    table.row("Mac fir, other", "Mac fir", "SaturationStage=Enable;ClkAux1Pattern=",
              QString(macFilter).replace("%1", "1000000000000000").replace("%2", "true"));
    for (const QString& ip : streamingFilters) {
        const QString filter = "'%%N_TAPS%%': '%1', '%%ENTITY_NAME%%': 'fir', '%%COEFS_PKG_HEXA_CONSTANT%%': '(%2)', "
                               "'%%APPLICATION%%': 'Velmora', '%%COEF_ARE_INPUT_SIGNALS%%': '%3', " +
                               widths;
        table.row(
            qPrintable(ip + ", input"), ip, "",
            QString(filter).replace("%1", "20").replace("%2", "others => (others => \\'0\\')").replace("%3", "true"));
        table.row(
            qPrintable(ip + ", constant"), ip, "CoefficientMode=Constant",
            QString(filter).replace("%1", "3").replace("%2", "x\"001\", x\"F1F\", x\"fff\"").replace("%3", "false"));
    }
    const QString link =
        "'%%PREFIX%%': 'lk', '%%ENTITY_NAME%%': 'link', '%%WORD_CLOCK%%': '125', '%%DATA_SIZE%%': '4', "
        "'%%SER_COUNT%%': '2', '%%SER_COUNT-1%%': '1', '%%DES_COUNT%%': '3', '%%DES_COUNT-1%%': '2', "
        "'%%BANK_NUMBER%%': '\"10\"', '%%SER_PADTYPE%%': '\"SSTL_1.8V_II\"', '%%SER_DIFFERENTIAL%%': '\"False\"', "
        "'%%SER_SLEW_RATE%%': '\"Medium\"', '%%SER_OUTPUT_CAPACITY%%': '\"12\"', "
        "'%%SER_OUTPUT_DELAY_LINE%%': '(0 => \"07\", 1 => \"12\")', '%%SER_TRAINING_VALUE%%': '\"0101\"', "
        "'%%SER_LOCATIONS%%': '(0 => \"03P\", 1 => \"03N\")', '%%DES_PADTYPE%%': '\"LVCMOS_1.8V\"', "
        "'%%DES_DIFFERENTIAL%%': '\"False\"', '%%DES_TERMINATION%%': '\"50\"', "
        "'%%DES_TERMINATION_REFERENCE%%': '\"Floating\"', '%%DES_TURBO%%': '\"True\"', "
        "'%%DES_INPUT_SIGNAL_SLOPE%%': '\"7.5\"', '%%DES_INPUT_DELAY_LINE%%': '(0 => \"00\", 1 => \"00\", 2 => "
        "\"00\")', '%%DES_TRAINING_VALUE%%': '\"0101\"', '%%DES_LOCATIONS%%': '(0 => \"03P\", 1 => \"03N\", 2 => "
        "\"04P\")', ";
    table.row("SER/DES", "SER/DES", "", link);
    const QString none = "(others => \"XXX\")";
    table.row("SER/DES, no lines", "SER/DES", "SERCount=0;DESCount=0;DES/InputSignalSlope=20",
              QString(link)
                  .replace("COUNT%%': '2', '%%SER_COUNT-1%%': '1'", "COUNT%%': '0', '%%SER_COUNT-1%%': '-1'")
                  .replace("COUNT%%': '3', '%%DES_COUNT-1%%': '2'", "COUNT%%': '0', '%%DES_COUNT-1%%': '-1'")
                  .replace("\"7.5\"", "\"20.0\"")
                  .replace("(0 => \"07\", 1 => \"12\")", none)
                  .replace("(0 => \"03P\", 1 => \"03N\")", none)
                  .replace("(0 => \"00\", 1 => \"00\", 2 => \"00\")", "()")
                  .replace("(0 => \"03P\", 1 => \"03N\", 2 => \"04P\")", none));
    const QString scope =
        "'%%STORE_WINDOW%%': '4', '%%STORE_TRIGGER%%': '1', '%%ENTITY_NAME%%': 'la', '%%CAPTURE_DEPTH%%': '6144', "
        "'%%CAPTURE_WIDTH%%': '13', '%%TRIGGER_MODE%%': '\"basic_and_edges\"', "
        "'%%CAPTURE_MODE%%': '\"multiple_windows\"', '%%USER_DATA_DELAY%%': '1', "
        "'%%EDGE_TRIGGER_VALUES%%': '0 => \"001\", 1 => \"000\", 2 => \"001\"', '%%INPUT_LINE_COUNT%%': '17', "
        "'%%BASIC_TRIGGER_VALUES%%': '(others => \"00\")', '%%MULTIPLE_TRIGGER_LEVEL%%': 'true', "
        "'%%TRIGGER_LINE_COUNT%%': '3', '%%INPUT_LINE_COUNT-1%%': '16', '%%APPLICATION%%': 'Velmora', "
        "'%%ADVANCED_TRIGGER_VALUES%%': '(others => \"00\")', '%%TRIGGER_LINE_COUNT-1%%': '2', "
        "'%%PRE_TRIGGER_SAMPLES%%': '33', '%%WINDOW_CAPTURE_LENGTH%%': '100', "
        "'%%ADVANCED_EDGE_TRIGGER_VALUES%%': '0 => \"010\", 1 => \"010\", 2 => \"010\"', ";
    table.row("Scope", "Scope", "", scope);
    table.row("Scope, other choices", "Scope",
              "StoreWindow=Disable;StoreTrigger=Disable;TriggerMode=Basic;CaptureMode=Pre-trigger;"
              "MultipleLevelTrigger=Disable",
              QString(scope)
                  .replace("WINDOW%%': '4'", "WINDOW%%': '0'")
                  .replace("TRIGGER%%': '1'", "TRIGGER%%': '0'")
                  .replace("basic_and_edges", "basic")
                  .replace("multiple_windows", "pre_trigger_enable")
                  .replace("'0 => \"001\", 1 => \"000\", 2 => \"001\"'", "'(others => \"000\")'")
                  .replace("BASIC_TRIGGER_VALUES%%': '(others => \"00\")'",
                           "BASIC_TRIGGER_VALUES%%': '0 => \"01\", 1 => \"00\", 2 => \"01\"'")
                  .replace("'true'", "'false'")
                  .replace("'0 => \"010\", 1 => \"010\", 2 => \"010\"'", "'(others => \"000\")'"));
    table.row("Startup Scope", "Startup Scope", "",
              "'%%ENTITY_NAME%%': 'la', '%%CAPTURE_DEPTH%%': '49152', '%%CAPTURE_WIDTH%%': '16', "
              "'%%INPUT_LINE_COUNT%%': '17', '%%TRIGGER_LINE_COUNT%%': '3', '%%STARTUP_TRIG_VALUE%%': '\"101\"', "
              "'%%INPUT_LINE_COUNT-1%%': '16', '%%APPLICATION%%': 'Velmora', '%%TRIGGER_LINE_COUNT-1%%': '2', "
              "'%%PRE_TRIGGER_SAMPLES%%': '33', ");
}

void FormsTest::statements() {
    QFETCH(QString, ip);
    QFETCH(QString, values);
    QFETCH(QString, statement);
    open(ip);
    set(kinds[ip].others);
    fillTables();
    set(values);
    QCOMPARE(FormFixture::statement(), "argDict = {  " + statement + "'%%DATE%%': 'DATE'}");
}

void FormsTest::generates() {
    openKind();
    if (kind().title.isEmpty())
        return; // the bridge makes a directory
    const QString answer = std::exchange(_dialog.answer, QString());
    set(kind().good);
    QCOMPARE(generate(), QStringList()); // cancelled
    QVERIFY(!QSettings().contains(kind().className + "/Filepath"));

    _dialog.answer = answer;
    QCOMPARE(generate(), QStringList({kind().title, "  Generating done"}));
    const QString name = values()["Entity"];
    QCOMPARE(_dialog.asked,
             QStringList({"Choose a file name", QDir::currentPath() + "/" + name + ".vhd", "VHDL (*.vhd)"}));
    const QByteArray output = readFile(answer);
    QVERIFY(output.contains("%%ENTITY_NAME%%=" + name.toUtf8() + "\n") && output.endsWith("\n"));
    QCOMPARE(QSettings().value(kind().className + "/Filepath").toString(), answer);

    set("Entity=");
    QCOMPARE(generate(), QStringList({kind().title, "E:   Entity name not specified!", "  Generating failed"}));
    QCOMPARE(_dialog.asked.at(1), answer);
    QCOMPARE(readFile(answer), output); // the old file stays

    open(QTest::currentDataTag(), "raise ValueError('x')");
    set(kind().good);
    const QStringList lines = generate();
    QCOMPARE(lines.mid(lines.size() - 2), // behind the trace
             QStringList({"E:   Processing aborted [Should not be here]", "  Generating " + kind().failed}));
    QCOMPARE(readFile(answer), QByteArray());
}

/// Also the forms that no window shows.
void FormsTest::goWithTheirPages() {
    QFETCH(QString, ip);
    const std::string description = _prefix->addKnownIP(ip, echo).toStdString();
    QVERIFY(Velmora::IPLeaf(description, Velmora::IPLeaf::Content::FormOnly).getForm());
    QCOMPARE(QApplication::topLevelWidgets(), QWidgetList());
}

void FormsTest::refusedArguments_data() {
    const TestTable<QString, QString, QString> table("ip", "values", "told");
    const auto row = [&table](const QString& ip, const QString& values, const QString& told) {
        table.row(qPrintable(ip + ": " + values), ip, values, told);
    };
    const QString character = "Unsupported character in value] (key: %%%1%%, value: %2)";
    for (const QString& ip : kinds.keys()) {
        if (!kinds[ip].good.isEmpty())
            row(ip, "Entity=x'y", QString(character).replace("%1%", "ENTITY_NAME%").replace("%2", "x'y"));
        if (kinds[ip].others.contains("Coefficients"))
            row(ip, "Coefficients=1,2,3,0x1F", "Invalid coefficient] (coefficient: 0x1F)");
    }
    row("SER/DES", "Prefix=l\\k", QString(character).replace("%1%", "PREFIX%").replace("%2", "l\\k"));
    row("SER/DES", "DES/TrainingValue=1'0",
        QString(character).replace("%1%", "SER_TRAINING_VALUE%").replace("%2", "\"1'0\""));
    row("Scope", "TriggerTableView 2=0,Rising edge;TriggerCount=2",
        "Unsupported value in basic trigger mode] (input: Trig1, value: Rising edge)");
    row("Scope", "TriggerTableView 2=both;TriggerMode=Basic & Edges", "Should not be here]");
}

/// The script gets nothing that could run as code; the error tells the form.
void FormsTest::refusedArguments() {
    QFETCH(QString, ip);
    QFETCH(QString, values);
    QFETCH(QString, told);
    open(ip);
    set(parse(values, parse(kinds[ip].good)));
    const QStringList filled = cells();
    _prefix->write("out.vhd", "old");
    QCOMPARE(generate(),
             QStringList({kinds[ip].title, "E:   Processing aborted [" + told, "  Generating " + kinds[ip].failed}));
    QCOMPARE(readFile(_dialog.answer), QByteArray());
    QCOMPARE(cells(), filled);
    try {
        statement();
        QFAIL("nothing thrown");
    } catch (const Brindle::Error& error) {
        QCOMPARE(error.getLocation().file, "src/bin/velmora/" + kinds[ip].className.toStdString());
    }
}

void FormsTest::countsBeyondTheCheck() {
    for (const QString& ip : streamingFilters) {
        open(ip);
        set(list(1));
        try {
            statement();
            QFAIL("nothing thrown");
        } catch (const Brindle::Fatal& error) {
            QCOMPARE(error.what(), "Number of coefficients must be in range 3 to 56");
            QCOMPARE(error.getLocation().file, "src/bin/velmora/" + kinds[ip].className.toStdString());
        }
    }
}

void FormsTest::oddResults_data() {
    const TestTable<QByteArray, QStringList, QByteArray> table("script", "told", "output");
    const QString failed = "  Generating failed";
    const QString done = "  Generating done";
    table.row("script's own check: comment lines",
              "def generate(argDict):\n  printError('Coefficients are odd.')\n  return '-- Generation failed: x\\n'\n",
              {"E:   Coefficients are odd.", "E:   Failed to generate the IP, please contact the provider.", done},
              "-- Generation failed: x\n\n");
    table.row("wrong type", "def generate(argDict): return u'x'",
              {"E:   Processing aborted ['text' is not a string]", failed}, "");
    table.row("markers", "def generate(argDict): return '`protect end'",
              {"E:   Processing aborted [No \"`protect begin\" found]", failed}, "");
    table.row("NUL cuts the text", "def generate(argDict): return 'a\\0b'", {done}, "a\n");
    table.row("bytes pass as they are", "def generate(argDict): return '\\xe9\\xff\\r'", {done}, "\xe9\xff\r\n");
    table.row("quotes of the literal", "def generate(argDict): return argDict['%%COEFS_PKG_HEXA_CONSTANT%%']", {done},
              "(others => (others => '0'))\n");
}

void FormsTest::oddResults() {
    QFETCH(QByteArray, script);
    QFETCH(QStringList, told);
    open("Systolic", script);
    set("Entity=fir;CoefficientMode=Input");
    QCOMPARE(generate(), QStringList("Generating systolic filter") + told);
    QTEST(readFile(_dialog.answer), "output");
}

VELMORA_TEST_MAIN(FormsTest)
#include "tst_forms.moc"
