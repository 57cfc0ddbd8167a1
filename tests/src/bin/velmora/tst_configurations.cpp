#include <support/Examples.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/configuration/ConfigurationFile.h>
#include <velmora/form/Form.h>
#include <velmora/rules/ConfigurationValue.h>
#include <velmora/tables/LineTableView.h>

#include <Brindle/core/Exception.h>

#include <QDir>
#include <QSettings>

#include <functional>
#include <memory>
#include <random>

#include <sys/stat.h>

using Velmora::Configuration;
using Velmora::IPLeaf;

namespace {

const QByteArray scopeText = "company = Orvane\n"                              // 1
                             "name = Scope\n"                                  // 2
                             "uid = SCOPE\n"                                   // 3
                             "\n"                                              // 4
                             "CaptureDepth = 6K\n"                             // 5
                             "CaptureMode = Multiple windows\n"                // 6
                             "Entity = la\n"                                   // 7
                             "InputCount = 17\n"                               // 8
                             "MultipleLevelTrigger = Enable\n"                 // 9
                             "PreTriggerSamples = 33\n"                        // 10
                             "StoreTrigger = Enable\n"                         // 11
                             "StoreWindow = Enable\n"                          // 12
                             "TriggerCount = 2\n"                              // 13
                             "TriggerMode = Basic & Edges\n"                   // 14
                             "TriggerTableView/0 = \"a, b\", 1, 0\n"           // 15
                             "TriggerTableView/1 = \"\", Both edges, Ignore\n" // 16
                             "UserDataDelay = 1\n"                             // 17
                             "WindowCaptureLength = 100\n";                    // 18
const QByteArray linkText =
    "company = Orvane\nname = SER/DES\nuid = SERDESINTERFACE\n\n"
    "BankNumber = 10\nDES/Differential = False\nDES/InputSignalSlope = 7.5\nDES/PadType = LVCMOS_1.8V\n"
    "DES/Termination = 50\nDES/TerminationReference = Floating\nDES/TrainingValue = 0101\n"
    "DES/Turbo = True\nDESCount = 1\nDataSize = 4\nEntity = link\nLocationTableView/DES/0 = \"\"\n"
    "LocationTableView/SER/0 = 03P, 0\nLocationTableView/SER/1 = 03N, 63\nPrefix = lk\n"
    "SER/Differential = False\nSER/OutputCapacity = 12\nSER/PadType = SSTL_1.8V_II\n"
    "SER/SlewRate = Medium\nSER/TrainingValue =\nSERCount = 2\nWordClock = 125\n";

/// "line: message" of what the function refuses; empty when it refuses nothing.
QString refusalOf(const std::function<void()>& function) {
    try {
        function();
    } catch (const Brindle::Critical& exception) {
        if (exception.getField("filename") != "some.velmora")
            return "no file name";
        return QString::fromStdString(exception.getField("line") + ": " + exception.getMessage());
    }
    return {};
}

Configuration parse(const QByteArray& text) {
    return Configuration::parse(text.toStdString(), "some.velmora");
}

QByteArray contentOf(const IPLeaf& page) {
    return QByteArray::fromStdString(page.getConfiguration().getContent());
}

/// Any text that a field of the kind can hold.
QString randomText(const Velmora::FieldEditor& editor, std::mt19937& random) {
    static const QStringList texts{"",
                                   " both ends ",
                                   "a, b",
                                   "\"quoted\"",
                                   "back\\slash",
                                   "tab\there",
                                   "line\nbreak",
                                   "\x01\x7f",
                                   QStringLiteral("\u00e9\u4e16\U0001f680"),
                                   "# = x",
                                   "x\"F1F\""};
    const QJsonObject description = editor.getDescription();
    const QString kind = description["kind"].toString();
    const auto pick = [&random](int size) { return static_cast<int>(random() % static_cast<unsigned>(size)); };
    if (kind == "choice") {
        const QVariantList items = description["items"].toVariant().toList();
        return items.at(pick(items.size())).toString();
    }
    if (kind == "number") {
        const int minimum = description["minimum"].toInt();
        return QString::number(minimum + pick(description["maximum"].toInt() - minimum + 1));
    }
    if (kind == "decimal")
        return QString::number(0.5 + 0.1 * pick(100), 'f', 1);
    return kind == "coefficients" ? "1, x\"F1F\", \"" : texts.at(pick(texts.size()));
}

void fillRandomly(const IPLeaf& page, std::mt19937& random) {
    for (const Velmora::FormField& field : page.getForm()->getFields())
        field.editor->setText(field.widget, randomText(*field.editor, random));
    for (const Velmora::FormTable& table : page.getForm()->getTables()) {
        Velmora::LineTableModel& model = *table.view->getModel();
        for (int row = 0; row < Velmora::LineTableModel::lineCount; ++row) {
            QStringList cells;
            for (int column = 1; column < model.columnCount(); ++column)
                cells += randomText(*model.getEditor(column), random);
            model.setCells(row, cells);
        }
    }
}

} // namespace

/// Configurations as texts, and in the forms that they are for.
class ConfigurationsTest : public QObject {
    Q_OBJECT

private:
    /// The page of the IP that the configuration is for.
    std::unique_ptr<IPLeaf> openFor(const QByteArray& text) const {
        const Configuration configuration = parse(text);
        const std::string uid = "uid " + configuration.getUID() + "\n";
        const QString name = QString::fromStdString(configuration.getName());
        return std::make_unique<IPLeaf>(_prefix->addKnownIP(name, "", uid.c_str()).toStdString());
    }

    std::unique_ptr<TestPrefix> _prefix;

private Q_SLOTS:
    void init() { _prefix = std::make_unique<TestPrefix>(); }
    void cleanup() { _prefix.reset(); }

    void values_data();
    void values();
    void wrongValues();
    void lenientText();
    void wrongText();
    void sortedContent();
    void everyFormAndBack_data() { Examples::addRows(); }
    void everyFormAndBack();
    void tablesAndHiddenRows();
    void refusedByForm_data();
    void refusedByForm();
    void files();
};

void ConfigurationsTest::values_data() {
    const TestTable<QByteArray, QByteArray, QByteArray> table("text", "asText", "asItem");
    table.row("plain", "fir_1", "fir_1", "fir_1");
    table.row("empty", "", "", "\"\"");
    table.row("comma", "a, b", "a, b", "\"a, b\"");
    table.row("inner quotes", "x\"F\\\"", "x\"F\\\"", "x\"F\\\"");
    table.row("blank begin", " a", "\" a\"", "\" a\"");
    table.row("blank end", "a\t", "\"a\\t\"", "\"a\\t\"");
    table.row("first quote", "\"\\a", "\"\\\"\\\\a\"", "\"\\\"\\\\a\"");
    table.row("controls", QByteArray("\r\n\0\x1f\x7f", 5), QByteArray("\"\\r\\n\\x00\\x1f\\x7f\""),
              QByteArray("\"\\r\\n\\x00\\x1f\\x7f\""));
    table.row("not ASCII", "\xc3\xa9", "\xc3\xa9", "\xc3\xa9");
}

void ConfigurationsTest::values() {
    namespace Value = Velmora::ConfigurationValue;
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, asText);
    QFETCH(QByteArray, asItem);
    const std::string plain = text.toStdString();
    QCOMPARE(Value::fromText(plain), asText.toStdString());
    QCOMPARE(Value::toText(asText.toStdString()), std::optional(plain));
    const std::vector<std::string> list{plain, "b", plain};
    QCOMPARE(Value::fromList(list), (asItem + ", b, " + asItem).toStdString());
    QCOMPARE(Value::toList((asItem + " ,b,\t" + asItem).toStdString()), std::optional(list));
}

void ConfigurationsTest::wrongValues() {
    for (const char* value : {"\"a", "\"a\" b", "\"\\q\"", "\"\\x41\""}) {
        QCOMPARE(Velmora::ConfigurationValue::toText(value), std::nullopt);
        QCOMPARE(Velmora::ConfigurationValue::toList(std::string("a, ") + value), std::nullopt);
    }
}

void ConfigurationsTest::lenientText() {
    const auto page = openFor(scopeText);
    QByteArray edited = "\xEF\xBB\xBF# a comment\r\n" + scopeText;
    edited.replace(" = ", "\t=").replace("\n", "\r\n").replace("Entity\t=la", "  Entity\t=  \"la\"  ");
    edited.chop(2);
    page->setConfiguration(parse(edited));
    QCOMPARE(contentOf(*page), scopeText);
}

void ConfigurationsTest::wrongText() {
    const auto refusal = [](const QByteArray& text) { return refusalOf([&text] { parse(text); }); };
    const QByteArray head = "company = Orvane\nname = Scope\nuid = SCOPE\n";
    QCOMPARE(refusal(head + "Entity la\n"), "4: Invalid line, expected 'key = value'");
    QCOMPARE(refusal(head + "Entity = \x1b[31m\n"),
             "4: Control character, write it between double quotes as \\n, \\r, \\t or \\x and two digits");
    QCOMPARE(refusal(head + "A = 1\nB = 2\nA = 1\n"), "6: 'A' is given in line 4 already, remove one of them");
    QCOMPARE(refusal("company = \"Orvane\n"), "1: Wrong double quotes or backslash in 'company'");
    QCOMPARE(refusal("company = Orvane\nname = Scope\n"),
             "1: 'uid' is missing, a configuration begins with company, name and uid of its IP");
}

void ConfigurationsTest::sortedContent() {
    Configuration configuration("Orvane", "Any", "ANY");
    for (const char* key : {"T/10", "Tb", "T/x", "T/9", "Ta", "T/2b", "A"})
        configuration.addText(key, "1");
    const std::string content = "company = Orvane\nname = Any\nuid = ANY\n\n"
                                "A = 1\nT/9 = 1\nT/10 = 1\nT/2b = 1\nT/x = 1\nTa = 1\nTb = 1\n";
    QCOMPARE(configuration.getContent(), content);
    QCOMPARE(Configuration::parse(content, "f").getContent(), content);
}

void ConfigurationsTest::everyFormAndBack() {
    QFETCH(QString, example);
    std::mt19937 random(20260101); // NOLINT: the same values in every run
    auto page = openFor(Examples::content(example));
    QSettings().setValue(page->getForm()->getGroup() + "/Filepath", "/secret");
    for (int run = 0; run < 20; ++run) {
        fillRandomly(*page, random);
        const QByteArray content = contentOf(*page);
        QVERIFY(!content.contains("ath ="));
        fillRandomly(*page, random);
        page->setConfiguration(parse(content));
        QCOMPARE(contentOf(*page), content);
    }
    const QByteArray last = contentOf(*page);
    page.reset(); // the settings keep what was loaded
    QCOMPARE(contentOf(*openFor(Examples::content(example))), last);
}

void ConfigurationsTest::tablesAndHiddenRows() {
    const auto page = openFor(linkText);
    Velmora::LineTableModel& model = *page->getForm()->getTables().front().view->getModel();
    model.setCells(2, {"15N", "7"}); // hidden, and gone once a configuration is loaded
    page->setConfiguration(parse(linkText));
    QCOMPARE(contentOf(*page), linkText);
    QCOMPARE(model.getCells(1), (QStringList{"03N", "63"}));
    QCOMPARE(model.getCells(2), (QStringList{"", "0"}));
    QCOMPARE(model.item(1, 0)->text(), "SER1");
}

void ConfigurationsTest::refusedByForm_data() {
    const TestTable<QByteArray, QByteArray, QByteArray, QString> table("text", "before", "after", "refusal");
    table.row("other name", scopeText, "name = Scope", "name = Systolic",
              "2: Configuration is for 'Systolic' of Orvane (uid SCOPE), not for 'Scope' of Orvane (uid SCOPE)");
    table.row("other uid", scopeText, "uid = SCOPE", "uid = SCOPE2",
              "2: Configuration is for 'Scope' of Orvane (uid SCOPE2), not for 'Scope' of Orvane (uid SCOPE)");
    table.row("unknown key", scopeText,
              "Entity =", "entity =", "7: Unknown key 'entity', remove its line or correct it");
    table.row("hidden row", scopeText, "TriggerCount = 2", "TriggerCount = 1",
              "16: 'TriggerTableView/1' is beyond the TriggerCount of 1, remove its line or count more");
    table.row("missing keys", scopeText, "Entity = la\nInputCount = 17\n", "",
              "16: Missing keys, add a line for each: Entity, InputCount");
    table.row("missing row", scopeText, "TriggerCount = 2", "TriggerCount = 4",
              "18: Missing keys, add a line for each: TriggerTableView/2, TriggerTableView/3");
    table.row("number too large", scopeText, "InputCount = 17", "InputCount = 241",
              "8: '241' cannot be the value of 'InputCount', expected a whole number from 2 to 240");
    table.row("long value", scopeText, "InputCount = 17", "InputCount = " + QByteArray(5000, '1'),
              "8: '" + QString(77, '1') +
                  "...' cannot be the value of 'InputCount', expected a whole number from 2 to 240");
    table.row("choice by place", scopeText, "StoreTrigger = Enable", "StoreTrigger = 0",
              "11: '0' cannot be the value of 'StoreTrigger', expected one of Enable, Disable");
    table.row(
        "cell", scopeText, ", 1, 0", ", 2, 0",
        "15: '2' cannot be the value of 'TriggerTableView/0', expected one of 0, 1, Rising edge, Falling edge, Both "
        "edges, "
        "Ignore");
    table.row("too few cells", scopeText, ", 1, 0", ", 1", "15: 'TriggerTableView/0' has 2 values instead of 3");
    table.row("decimals", linkText, "Slope = 7.5", "Slope = 7.55",
              "7: '7.55' cannot be the value of 'DES/InputSignalSlope', expected a multiple of 0.1 from 0.5 to 20.0");
}

void ConfigurationsTest::refusedByForm() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const auto page = openFor(text);
    page->setConfiguration(parse(text));
    QByteArray wrong = text;
    wrong.replace(before, after).replace(" = la", " = changed").replace(" = lk", " = changed");
    QTEST(refusalOf([&] { page->setConfiguration(parse(wrong)); }), "refusal");
    QCOMPARE(contentOf(*page), text);
}

void ConfigurationsTest::files() {
    const QString filename = _prefix->path("some.velmora");
    Velmora::writeConfigurationFile(filename, parse(scopeText));
    QCOMPARE(readFile(filename), scopeText);
    QCOMPARE(Velmora::readConfigurationFile(filename).getContent(), scopeText.toStdString());

    const auto messageOf = [](const QString& name) {
        try {
            Velmora::readConfigurationFile(name);
        } catch (const Brindle::Critical& exception) {
            return QString::fromStdString(exception.getMessage() + "|" + exception.getField("line") +
                                          exception.getField("reason"));
        }
        return QString();
    };
    QCOMPARE(messageOf(_prefix->path()), "Unable to open configuration file|It is no regular file");
    QCOMPARE(mkfifo(QFile::encodeName(_prefix->path("pipe")).constData(), 0600), 0); // which nobody writes to
    QCOMPARE(messageOf(_prefix->path("pipe")), "Unable to open configuration file|It is no regular file");
    QVERIFY(messageOf("/proc/version") != messageOf(_prefix->write("empty", ""))); // whose size is told as 0, too
    QCOMPARE(messageOf("/proc/self/mem"),
             "Unable to open configuration file|Input/output error"); // opens, cannot be read
    _prefix->write("latin.velmora", scopeText + "Name = Andr\xe9\n");
    QCOMPARE(messageOf("latin.velmora"), "Line is not UTF-8, save the file in this encoding|19");
    _prefix->write("cut.velmora", scopeText + "Name = \xc3");
    QCOMPARE(messageOf("cut.velmora"), "Line is not UTF-8, save the file in this encoding|19");
    _prefix->write("large.velmora", QByteArray(1024 * 1024 + 1, '\n'));
    QCOMPARE(messageOf("large.velmora"), "Configuration file is larger than 1 MiB|");
    QVERIFY_EXCEPTION_THROWN(Velmora::writeConfigurationFile(_prefix->path("no/such"), parse(scopeText)),
                             Brindle::Critical);
}

VELMORA_TEST_MAIN(ConfigurationsTest)
#include "tst_configurations.moc"
