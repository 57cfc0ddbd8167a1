#include <support/Examples.h>
#include <support/FormFixture.h>
#include <support/TestMain.h>
#include <support/TestTable.h>

#include <velmora/catalogue/DescriptionFile.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/configuration/ConfigurationFile.h>
#include <velmora/form/Form.h>
#include <velmora/widgets/HelpLabel.h>

#include <Brindle/core/Build.h>
#include <Brindle/core/Exception.h>

#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>

#include <memory>

using Velmora::IPLeaf;

namespace {

/// Files below a directory by their relative paths; that of a single file by the empty path.
QMap<QString, QByteArray> filesOf(const QString& path) {
    if (QFileInfo(path).isFile())
        return {{"", readFile(path)}};
    QMap<QString, QByteArray> files;
    const QDir directory = QFileInfo(path).absoluteFilePath();
    QDirIterator iterator(directory.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString filename = iterator.next();
        files[directory.relativeFilePath(filename)] = readFile(filename);
    }
    return files;
}

/// The lines without the blanks of their indents.
QStringList withoutIndents(QStringList lines) {
    return lines.replaceInStrings(QRegularExpression("^ +"), "");
}

/// What the script of the IP would be given, or why nothing.
QStringList argumentsOf(const IPLeaf& page) {
    try {
        QString statement = QString::fromStdString(page.getGeneration().getArguments().getStatement());
        return statement.section("{  '", 1).replace("': '", " = ").chopped(2).split("', '");
    } catch (const Brindle::Exception& exception) {
        return {QString::fromStdString(exception.getMessage())};
    }
}

/// What each item of each choice makes of the arguments.
QStringList choicesOf(const IPLeaf& page) {
    const QStringList given = argumentsOf(page);
    QStringList lines;
    for (const Velmora::FormField& field : page.getForm()->getFields()) {
        auto* combo = page.findChild<QComboBox*>(field.key);
        const int chosen = combo ? combo->currentIndex() : 0;
        for (int index = 0; combo && index < combo->count(); ++index) {
            combo->setCurrentIndex(index);
            QStringList changed = argumentsOf(page);
            for (const QString& argument : given)
                changed.removeOne(argument);
            lines += (QStringList(field.key + " = " + combo->currentText()) + changed).join(" | ");
        }
        if (combo)
            combo->setCurrentIndex(chosen);
    }
    return lines;
}

QStringList sectionsAndHelpOf(const IPLeaf& page) {
    QStringList lines;
    for (const auto* title : page.findChildren<QToolButton*>())
        lines += "section: " + title->text();
    for (const auto* help : page.findChildren<Velmora::HelpLabel*>())
        lines += "help: " + help->text().replace('\n', ' ');
    return lines;
}

} // namespace

/// The program without a window, beside the pages of the window.
class GenerateTest : public QObject {
    Q_OBJECT

private:
    struct Outcome {
        int status;
        QByteArray output;
        QStringList errors;

        QJsonArray json() const { return QJsonDocument::fromJson(output).array(); }
    };

    /// Runs the program, or another one, in the test's directory with nothing of the user's own: no display, no home.
    Outcome run(const QStringList& arguments, const QString& program = VELMORA_GENERATE,
                const QByteArray& input = {}) const;
    QJsonObject preview(const QString& filename) const {
        return run({"preview", filename, "--json"}).json()[0].toObject();
    }
    Outcome generate(const QStringList& arguments) const { return run(QStringList("run") + arguments); }
    /// What the shell offers for the last of the words behind the program's name.
    Outcome complete(const QStringList& words);
    void set(const QString& variable, const QString& value) { _environment.insert(variable, value); }
    void useShippedCatalogue() {
        qputenv("ORVANE_PREFIX", VELMORA_PREFIX);
        set("ORVANE_PREFIX", VELMORA_PREFIX);
    }
    void copyExamples() const;
    /// The page in the window of the IP that the configuration is for, as it is at the first start.
    std::unique_ptr<IPLeaf> openBlank(const Velmora::Configuration& configuration) const;
    /// The same with its values.
    std::unique_ptr<IPLeaf> openShipped(const QString& configurationFile) const;
    /// Adds the systolic filter with that script and writes a configuration of it, the entity name as it stands in it.
    void addFilter(const QByteArray& script, const QByteArray& entity = "fir",
                   const QString& filename = "fir.velmora") const;

    std::unique_ptr<TestPrefix> _prefix;
    QProcessEnvironment _environment;

private Q_SLOTS:
    void init();
    void cleanup() { _prefix.reset(); }

    void sameAsTheWindow_data() { Examples::addRows(); }
    void sameAsTheWindow();
    void previewEqualsRun_data() { Examples::addRows(); }
    void previewEqualsRun();
    void previewsOfWhatFails();
    void previewHidesWhatIsProtected();
    void benches();
    void standardInput();
    void catalogueCommands();
    void descriptions_data() { Examples::addRows(); }
    void descriptions();
    void unwritableOutput();
    void outputPlaces();
    void streams();
    void refusedOutputs_data();
    void refusedOutputs();
    void failingFileKeepsTheOthers();
    void failuresKeepTheOutput();
    void oneFailureStopsNoOther();
    void filesAreApart();
    void filesAtOnce();
    void sameRefusalsAsTheWindow();
    void hostileConfigurations();
    void wrongUsage();
    void sourceDateEpoch();
    void completion();
    void settingsAreLeftAlone();
    void brokenNeighbours();
    void exampleRepository();
};

void GenerateTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _environment = QProcessEnvironment();
    set("ORVANE_PREFIX", _prefix->path());
    set("PATH", qEnvironmentVariable("PATH"));
    set("LC_ALL", "C.UTF-8");
    set("ASAN_OPTIONS", "detect_leaks=0"); // as for every test
    set("SOURCE_DATE_EPOCH", "1767225600");
    qputenv("SOURCE_DATE_EPOCH", "1767225600");
}

GenerateTest::Outcome GenerateTest::run(const QStringList& arguments, const QString& program,
                                        const QByteArray& input) const {
    QProcess process;
    process.setProcessEnvironment(_environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool hasEnded = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit;
    QStringList errors = QString::fromUtf8(process.readAllStandardError()).split('\n', Qt::SkipEmptyParts);
    // fontconfig reads SOURCE_DATE_EPOCH too when it makes a cache, and complains of it by itself
    errors = errors.filter(QRegularExpression("^(?!Fontconfig: SOURCE_DATE_EPOCH)"));
    if (Brindle::isDebug()) // errors tell their location there
        errors.replaceInStrings(QRegularExpression(" \\[[^\\[\\]]*, line \\d+\\]$"), "");
    return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(), errors};
}

GenerateTest::Outcome GenerateTest::complete(const QStringList& words) {
    set("PATH", QFileInfo(VELMORA_GENERATE).path() + ":" + qEnvironmentVariable("PATH"));
    const QString script = "source \"$0\"; COMP_WORDS=(velmora-generate \"$@\"); COMP_CWORD=$#; _velmora_generate; "
                           "printf '%s\\n' \"${COMPREPLY[@]}\"";
    return run(QStringList{"-c", script, VELMORA_COMPLETION} + words, "bash");
}

void GenerateTest::copyExamples() const {
    for (const QString& name : QDir(VELMORA_EXAMPLES).entryList(QDir::Files))
        _prefix->write(name, readFile(QString(VELMORA_EXAMPLES) + "/" + name));
}

std::unique_ptr<IPLeaf> GenerateTest::openBlank(const Velmora::Configuration& configuration) const {
    for (const std::string& filename : Velmora::findDescriptionFiles(VELMORA_PREFIX)) {
        if (auto page = std::make_unique<IPLeaf>(filename); page->getName() == configuration.getName())
            return page;
    }
    return nullptr;
}

std::unique_ptr<IPLeaf> GenerateTest::openShipped(const QString& configurationFile) const {
    const auto configuration = Velmora::readConfigurationFile(configurationFile);
    auto page = openBlank(configuration);
    page->setConfiguration(configuration);
    return page;
}

void GenerateTest::addFilter(const QByteArray& script, const QByteArray& entity, const QString& filename) const {
    _prefix->writeScript("share/velmora/Orvane/fir/generator.py", script);
    _prefix->addIP("Orvane/fir", "name Systolic\ncategory DSP\nuid FIRSYSTOLIC\ncompany Orvane\nvariants FAMILYA\n"
                                 "script generator.py\n");
    _prefix->write(filename, Examples::content("fir_systolic").replace("= fir_systolic", "= " + entity));
}

/// A configuration loaded into the window's page and generated there, and what the page saves, generated by the
/// program.
void GenerateTest::sameAsTheWindow() {
    QFETCH(QString, example);
    useShippedCatalogue();
    const auto page = openShipped(Examples::path(example));
    const QString windowOutput = _prefix->path("window/" + example);
    QDir().mkpath(QFileInfo(windowOutput).path());
    PathDialogs dialogs;
    dialogs.answer = windowOutput;
    ConsoleRecorder recorder;
    QTest::mousePress(page->findChild<QPushButton*>("Generate"), Qt::LeftButton);

    _prefix->write("saved.velmora", QByteArray::fromStdString(page->getConfiguration().getContent()));
    QCOMPARE(readFile(_prefix->path("saved.velmora")), Examples::content(example));
    const Outcome outcome = generate({"saved.velmora", "--json", "-o", "output"});
    QCOMPARE(outcome.errors, QStringList());
    QCOMPARE(outcome.status, 0);
    QStringList messages;
    const QJsonObject report = outcome.json().first().toObject();
    for (const QJsonValue message : report["messages"].toArray())
        messages += message["text"].toString();
    QCOMPARE(messages, withoutIndents(recorder.lines()));
    QVERIFY(report["succeeded"].toBool());
    QCOMPARE(report["output"].toString(), "output");
    QVERIFY(!filesOf(windowOutput).isEmpty());
    QCOMPARE(filesOf("output"), filesOf(windowOutput));
}

/// Previews write nothing, and hold what a generation writes.
void GenerateTest::previewEqualsRun() {
    QFETCH(QString, example);
    useShippedCatalogue();
    const QString place = QString(VELMORA_EXAMPLES) + "/" + example + ".velmora";
    const auto present = filesOf(VELMORA_EXAMPLES);
    const QJsonObject told = preview(place);
    QCOMPARE(filesOf(VELMORA_EXAMPLES), present);
    QVERIFY(told["succeeded"].toBool() && told["checked"].isNull() && told["errors"].toArray().isEmpty());
    QCOMPARE(told["entity"].toString(), example);
    QVERIFY(!told["ports"].toArray().isEmpty() && told["facts"].toArray().size() >= 3);

    const Outcome outcome = generate({place, "--json", "-o", "output"});
    QCOMPARE(told["ip"], outcome.json()[0].toObject()["ip"]);
    QMap<QString, QByteArray> written = filesOf("output");
    if (written.contains(""))
        written = {{example + ".vhd", written[""]}};
    QMap<QString, QByteArray> shown;
    for (const QJsonValue file : told["files"].toArray())
        shown[file["name"].toString()] = file["text"].toString().toUtf8();
    QCOMPARE(shown, written);
    const QJsonObject fact = told["facts"].toArray()[0].toObject();
    QVERIFY(fact["label"] != "Files" || fact["value"].toInt() == written.size());
    QVERIFY(run({"preview", place}).output.contains("\n  Ports of " + example.toUtf8() + "\n"));
}

/// What is wrong with a table's cell, with the script's results and with the file itself.
void GenerateTest::previewsOfWhatFails() {
    useShippedCatalogue();
    const auto verify = [this](const QByteArray& content, const QString& error, const QJsonValue& checked) {
        _prefix->write("a.velmora", content);
        const QJsonObject told = preview("a.velmora");
        const QString first = told["errors"].toArray()[0].toString();
        QVERIFY2(first.startsWith(error), qPrintable(first));
        QCOMPARE(told["checked"], checked);
        QVERIFY(!told["succeeded"].toBool() && told["entity"].isNull() && told["instantiation"].isNull());
        for (const char* list : {"facts", "generics", "ports", "files"})
            QCOMPARE(told[list], QJsonArray());
        QCOMPARE(run({"preview", "a.velmora"}).status, 1);
    };
    const auto refused = [](const QString& message, const QJsonArray& fields) {
        return QJsonObject{{"message", message}, {"fields", fields}};
    };
    const QString noEntity = "Entity name not specified!";
    verify(Examples::content("fir_mac").replace("Entity = fir_mac", "Entity ="), noEntity,
           refused(noEntity, {"Entity"}));
    const QString clash = "DES location '01P' is already used!";
    verify(Examples::content("serdes_link").replace("DES/1 = 04P", "DES/1 = 01P"), clash,
           refused(clash, {"LocationTableView/SER/0", "LocationTableView/DES/1"}));
    verify(Examples::content("scope_bus").replace("Basic & Edges", "Basic"),
           "Processing aborted [Unsupported value in basic trigger mode] (input: Trig0, value: Rising edge)",
           QJsonValue());
    verify(Examples::content("serdes_link").replace("= serdes_link", "= entity"),
           "Entity name \"entity\" is a reserved word of VHDL: choose another name.", QJsonValue());
    verify("company = Orvane\n", "'uid' is missing, a configuration begins with company, name and uid of its IP",
           QJsonValue());
}

void GenerateTest::previewHidesWhatIsProtected() {
    useShippedCatalogue();
    set("ORVANE_PREFIX", _prefix->path());
    addFilter(
        "def generate(argDict):\n  return 'entity fir is end;\\n`protect begin\\nentity secret is end;\\n`protect "
        "end\\n-- \\xff\\xef\\xbb\\xbf'\n"
        "def testBench(argDict):\n  return '`protect begin\\nsecret\\n`protect end\\nentity fir_tb is end;'\n");
    const QJsonObject told = preview("fir.velmora");
    const QString text = told["files"].toArray()[0].toObject()["text"].toString();
    QVERIFY(text.contains("`protect begin_protected\n") && text.endsWith(QString("-- \uFFFD\uFEFF\n")));
    QVERIFY(!QJsonDocument(told).toJson().contains("secret"));
    QCOMPARE(told["entity"].toString(), "fir");
    QCOMPARE(run({"bench", "fir.velmora"}).status, 0);
    const QByteArray bench = readFile("fir_tb.vhd");
    QVERIFY(bench.startsWith("`protect begin_protected\n") && bench.endsWith("entity fir_tb is end;\n"));
    QVERIFY(!bench.contains("secret"));
}

void GenerateTest::benches() {
    useShippedCatalogue();
    copyExamples();
    QDir().mkpath("sim");
    QCOMPARE(run({"bench", "spi_bridge.velmora"}).errors, QStringList());
    generate({"spi_bridge.velmora"});
    QCOMPARE(readFile("tb_spi_bridge.vhd"), readFile("spi_bridge/sim/tb_spi_bridge.vhd"));
    set("ORVANE_PREFIX", _prefix->path());
    addFilter("def generate(argDict):\n  return ''\n");
    const Outcome none = run({"bench", "fir.velmora", "-o", "sim/fir_tb.vhd"});
    QCOMPARE(none.status, 1);
    QCOMPARE(none.errors.first().trimmed(), "Processing aborted [IP 'Systolic' has no test bench]");
    addFilter("def testBench(argDict):\n  if argDict['%%ENTITY_NAME%%'] == 'b': printError('no')\n  return 'bench'\n");
    addFilter(QByteArray(), "b", "b.velmora");
    addFilter("def testBench(argDict):\n  if argDict['%%ENTITY_NAME%%'] == 'b': printError('no')\n  return 'bench'\n");
    QCOMPARE(run({"bench", "b.velmora", "fir.velmora", "-o", "sim"}).status, 1);
    QCOMPARE(filesOf("sim"), (QMap<QString, QByteArray>{{"fir_tb.vhd", "bench\n"}}));
}

void GenerateTest::standardInput() {
    useShippedCatalogue();
    const QByteArray content = Examples::content("fir_mac").replace("\n", "\r\n");
    for (const char* command : {"check", "preview", "instantiate", "run"}) {
        const Outcome outcome = run({command, "-"}, VELMORA_GENERATE, content);
        QCOMPARE(outcome.errors, QStringList());
        QCOMPARE(outcome.status, 0);
    }
    QVERIFY(readFile("fir_mac.vhd").contains("entity fir_mac is"));
    const QString error = run({"preview", "-"}, VELMORA_GENERATE, "company\n").errors.first();
    QVERIFY2(error.contains("(filename: -, line: 1)"), qPrintable(error));
}

void GenerateTest::catalogueCommands() {
    useShippedCatalogue();
    const Outcome list = run({"list"});
    QCOMPARE(list.status, 0);
    QVERIFY(list.output.simplified().contains(" SER/DES Interface/Serial Orvane FERROLITE CALDERA NIMBUS "));
    const QJsonObject expected{{"name", "SER/DES"},
                               {"company", "Orvane"},
                               {"uid", "SERDESINTERFACE"},
                               {"category", "Interface/Serial"},
                               {"variants", QJsonArray{"FERROLITE", "CALDERA", "NIMBUS"}}};
    QVERIFY(run({"list", "--json"}).json().contains(expected));
    const QByteArray json = run({"describe", "scope", "--json"}).output;
    const QJsonObject description = QJsonDocument::fromJson(json).object();
    QCOMPARE(description["fields"].toArray().at(1).toObject(), (QJsonObject{{"key", "InputCount"},
                                                                            {"label", "Input line count"},
                                                                            {"kind", "number"},
                                                                            {"minimum", 2},
                                                                            {"maximum", 240},
                                                                            {"reset", "2"}}));
    const QJsonObject table = description["tables"].toArray().at(0).toObject();
    QCOMPARE(table["count"].toString(), "TriggerCount");
    QCOMPARE(table["columns"].toArray().at(1).toObject()["reset"].toString(), "Ignore");
    QVERIFY(run({"template", "SCOPE"}).output.contains("\nTriggerTableView/0 = \"\", Ignore, Ignore\n"));
    const Outcome unknown = run({"describe", "Systolic filter"});
    QCOMPARE(unknown.status, 2);
    QVERIFY(unknown.errors.first().contains("No installed IP has the name or uid 'Systolic filter'"));
}

/// What is shown in the form of each example, and what it gives to its script, is what VELMORA_DESCRIPTIONS holds;
/// scripts/refresh-descriptions has this test write it anew.
void GenerateTest::descriptions() {
    QFETCH(QString, example);
    useShippedCatalogue();
    const auto page = openShipped(Examples::path(example));
    const std::string first = openBlank(page->getConfiguration())->getConfiguration().getContent();
    const Velmora::Generation generation = page->getGeneration();
    QStringList lines{"settings: " + page->getForm()->getGroup(), "title: " + QString::fromStdString(generation.title),
                      QString("after an exception: ") + generation.failureRule.closingLine};
    lines += sectionsAndHelpOf(*page) + argumentsOf(*page) + choicesOf(*page);
    QTest::mousePress(page->findChild<QPushButton*>("Reset"), Qt::LeftButton);
    const std::string reset = page->getConfiguration().getContent();
    lines += QString::fromStdString("\nat the first start:\n" + first + "\nafter a reset:\n" + reset).split('\n');
    const QByteArray described = run({"describe", QString::fromStdString(page->getUID())}).output;
    const QByteArray found = described + lines.join('\n').toUtf8() + "\n";
    QFile file(QString(VELMORA_DESCRIPTIONS) + "/" + example + ".txt");
    if (qEnvironmentVariableIsSet("VELMORA_REFRESH"))
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(found) == found.size() && file.flush());
    QCOMPARE(QString(found).split('\n'), QString(readFile(file.fileName())).split('\n'));
}

void GenerateTest::unwritableOutput() {
    _prefix->addKnownIP("Systolic", FormFixture::echo);
    const QString command = QStringLiteral(VELMORA_GENERATE) + " template Systolic ";
    const Outcome full = run({"-c", command + ">/dev/full"}, "sh");
    QCOMPARE(full.errors, QStringList("Unable to write to standard output"));
    QCOMPARE(full.status, 1);
}

void GenerateTest::outputPlaces() {
    useShippedCatalogue();
    copyExamples();
    QVERIFY(QDir().mkpath("in/other") && QDir().mkpath("elsewhere/deep") && QFile::link("elsewhere/deep", "link"));
    for (const char* name : {"fir_mac.velmora", "spi_bridge.velmora"})
        QFile::rename(name, QString("in/") + name);
    QCOMPARE(generate({"in/fir_mac.velmora"}).output.split('\n').at(3), "  Written to in/fir_mac.vhd");
    QVERIFY(readFile("in/fir_mac.vhd").contains("entity fir_mac is"));
    QCOMPARE(generate({"in/fir_mac.velmora", "in/spi_bridge.velmora", "-q", "-o", "in/other"}).output, "");
    QCOMPARE(filesOf("in/other/fir_mac.vhd"), filesOf("in/fir_mac.vhd"));
    QVERIFY(QFileInfo("in/other/spi_bridge/rtl/spi_bridge.vhd").isFile());

    QCOMPARE(generate({"in/fir_mac.velmora", "-q", "-o", "link/"}).status, 0); // there is such a directory
    QCOMPARE(filesOf("elsewhere/deep/fir_mac.vhd"), filesOf("in/fir_mac.vhd"));

    const QString foreign = QStringLiteral("\u00e9\u4e16.velmora");
    _prefix->write(foreign, Examples::content("fir_mac"));
    set("LC_ALL", "C");
    QCOMPARE(generate({foreign, "--output", "link/../" + foreign + ".vhd"}).errors, QStringList());
    QCOMPARE(filesOf("elsewhere/" + foreign + ".vhd"), filesOf("in/fir_mac.vhd")); // ".." is the file system's
}

/// What is no file is read to its end, and written to with nothing else.
void GenerateTest::streams() {
    addFilter("from quarnel import *\nprint 'printed'\nprintText('remark')\n" + FormFixture::echo);
    QCOMPARE(generate({"fir.velmora", "-q"}).errors, QStringList("    remark"));
    const QByteArray expected = readFile("fir.vhd");
    const auto runIn = [&](const QString& shell) {
        _prefix->write("log", "earlier\n");
        const QString command = QStringLiteral(VELMORA_GENERATE) + " run " + shell;
        const Outcome outcome = run({"-c", command}, "sh");
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.output, "");
        QVERIFY(outcome.errors.contains("    remark") && outcome.errors.contains("printed"));
        QCOMPARE(readFile("log"), "earlier\n" + expected);
    };
    runIn("fir.velmora -o /dev/stdout >> log");
    runIn("fir.velmora -o - >> log");
    runIn("- --output /dev/fd/3 3>> log < fir.velmora");
    runIn("/dev/stdin -o - < fir.velmora | cat >> log");
    QDir().mkpath("empty");
    const QString here = QStringLiteral("cd empty && " VELMORA_GENERATE " run -q - < ../fir.velmora");
    QCOMPARE(run({"-c", here}, "sh").status, 0);
    QCOMPARE(filesOf("empty"), (QMap<QString, QByteArray>{{"fir.vhd", expected}}));
}

void GenerateTest::refusedOutputs_data() {
    const TestTable<QStringList, QString> table("arguments", "error");
    table.row("the configuration", {"fir.velmora", "-o", "fir.velmora"},
              "Processing aborted [Output would replace the configuration fir.velmora]");
    table.row("no directory", {"fir.velmora", "-o", "no/such.vhd"},
              "Processing aborted [Unable to write file] (filename: no/such.vhd, reason: No such file or directory)");
    table.row(
        "named as a directory", {"fir.velmora", "-o", "none/"},
        "Processing aborted [Unable to write file] (filename: none/, reason: It names a directory, name the file)");
    table.row(
        "twice", {"fir.velmora", "copy.velmora"},
        "Processing aborted [Another configuration has the output fir.vhd too, give their entities different names]");
    table.row("several files to one pipe", {"bare.velmora", "-o", "-"},
              "Several files need a directory, '-' takes one text");
    table.row("without a name", {"bare.velmora"}, "Entity name not specified!");
}

void GenerateTest::refusedOutputs() {
    QFETCH(QStringList, arguments);
    addFilter(FormFixture::echo);
    _prefix->addBridge(returning("{}"));
    _prefix->write("copy.velmora", readFile("fir.velmora"));
    _prefix->write("bare.velmora", "company = Orvane\nname = APB slave to serial master\nuid = UID\nEntity =\n");
    const Outcome outcome = generate(arguments);
    QCOMPARE(outcome.status, 1);
    QFETCH(QString, error);
    QCOMPARE(outcome.errors.filter(error).size(), 1);
    QCOMPARE(outcome.errors.last(), "Failed: " + arguments.at(arguments.contains("-o") ? 0 : arguments.size() - 1));
    QCOMPARE(QFileInfo::exists("fir.vhd"), arguments.contains("copy.velmora")); // of the first one
    QVERIFY(!QFileInfo::exists("none"));
    QCOMPARE(generate({"fir.velmora", "-o", "/dev/null"}).status, 0);
    QVERIFY(!QFileInfo("/dev/null").isFile());
}

void GenerateTest::failuresKeepTheOutput() {
    const auto verify = [this](const QByteArray& script, const QStringList& errors) {
        addFilter(script);
        _prefix->write("fir.vhd", "earlier");
        const Outcome outcome = generate({"fir.velmora"});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(withoutIndents(outcome.errors), errors + QStringList("Failed: fir.velmora"));
        QVERIFY(outcome.output.endsWith("    Generating failed\n"));
        QCOMPARE(readFile("fir.vhd"), "earlier");
        QCOMPARE(QDir().entryList({"fir*"}), (QStringList{"fir.velmora", "fir.vhd"})); // nothing left behind
    };
    verify("def generate(argDict):\n  printError('Too wide')\n  return 'x'\n",
           {"Too wide", "Failed to generate the IP, please contact the provider."});
    verify("def generate(argDict):\n  raise ValueError('no')\n",
           {"Traceback (most recent call last):", "File \"<string>\", line 1, in <module>",
            "File \"<string>\", line 2, in generate", "ValueError: no", "Processing aborted [Should not be here]"});
    verify(returning("'x\\n`protect end\\n'"), {"Processing aborted [No \"`protect begin\" found]"});
}

/// What several processes do is told and decided as if one file came after the other.
void GenerateTest::filesAtOnce() {
    const QByteArray script = "import os, time\n"
                              "def generate(argDict):\n"
                              "  entity = argDict['%%ENTITY_NAME%%']\n"
                              "  printText('of ' + entity)\n"
                              "  if entity == 'crash': os.abort()\n"
                              "  if entity == 'same' and not os.path.exists('began'):\n"
                              "    os.mkdir('began')\n"
                              "    time.sleep(0.3)\n"
                              "    raise ValueError('no')\n"
                              "  if entity == 'slow': time.sleep(0.3)\n"
                              "  if entity.startswith('meet'):\n"
                              "    os.mkdir(entity)\n"
                              "    while not (os.path.exists('meet1') and os.path.exists('meet2')): time.sleep(0.01)\n"
                              "  return entity\n";
    QStringList files;
    for (const char* entity : {"same", "same", "other", "slow", "slow", "same", "crash", "another", "other"}) {
        files += QString::number(files.size()) + ".velmora";
        addFilter(script, entity, files.last());
    }
    for (const QString& option : QStringList{"", "--json"}) {
        const auto runAtOnce = [&](const QString& jobs) {
            QDir("began").removeRecursively();
            QDir("rtl").removeRecursively();
            QDir().mkdir("rtl");
            return generate((files + QStringList{"-o", "rtl", "-j", jobs, option}).filter(QRegularExpression(".")));
        };
        const Outcome one = runAtOnce("1");
        const auto written = filesOf("rtl");
        QCOMPARE(written.keys(), (QStringList{"another.vhd", "other.vhd", "same.vhd", "slow.vhd"}));
        const Outcome three = runAtOnce("3");
        QCOMPARE(three.output, one.output);
        QCOMPARE(three.errors, one.errors);
        QCOMPARE(three.status, 1);
        QCOMPARE(filesOf("rtl"), written);
    }
    addFilter(script, "meet1", "0.velmora");
    addFilter(script, "meet2", "1.velmora");
    QCOMPARE(generate({"0.velmora", "1.velmora", "--jobs=2"}).status, 0);
}

void GenerateTest::sameRefusalsAsTheWindow() {
    useShippedCatalogue();
    const auto verify = [this](const QString& name, const QByteArray& before, const QByteArray& after, bool isChecked) {
        _prefix->write("wrong.velmora", Examples::content(name).replace(before, after));
        const auto page = openShipped("wrong.velmora");
        PathDialogs dialogs;
        dialogs.answer = "window";
        ConsoleRecorder recorder;
        QTest::mousePress(page->findChild<QPushButton*>("Generate"), Qt::LeftButton);
        QStringList told = recorder.errors().replaceInStrings(QRegularExpression("^E: +"), "");
        QVERIFY(!told.isEmpty());
        told += "Failed: wrong.velmora";
        const Outcome outcome = generate({"wrong.velmora", "-o", "output"});
        QCOMPARE(withoutIndents(outcome.errors), told);
        QCOMPARE(outcome.status, 1);
        QVERIFY(!QFileInfo::exists("output"));
        const Outcome check = run({"check", "wrong.velmora"});
        QCOMPARE(check.status, isChecked ? 1 : 0);
        QCOMPARE(withoutIndents(check.errors), isChecked ? told : QStringList());
    };
    verify("fir_systolic", "Entity = fir_systolic", "Entity =", true);
    verify("scope_bus", "Basic & Edges", "Basic", true);       // a value of a table
    verify("serdes_link", "= serdes_link", "= entity", false); // the script's
}

void GenerateTest::hostileConfigurations() {
    const auto verify = [this](const QByteArray& entity, const QString& message) {
        addFilter("open('ran', 'w')\n" + FormFixture::echo, entity, "in/fir.velmora");
        const Outcome outcome = generate({"in/fir.velmora"});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.errors.first().trimmed().section(" (", 0, 0), "Processing aborted [" + message + "]");
        QCOMPARE(filesOf("in").keys(), QStringList("fir.velmora"));
        QVERIFY(!QFileInfo::exists("ran") && !QFileInfo::exists("ran.vhd"));
    };
    const QString noName = "Entity name makes no file name, name the output with --output";
    verify("x', 'a': open('ran', 'w').write('x') or '", "Unsupported character in value");
    verify("\"x\\x00y\"", noName);
    verify("../ran", noName);
}

void GenerateTest::wrongUsage() {
    const auto verify = [this](const QStringList& arguments, const QString& problem) {
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.errors.first().section(';', 0, 0), "velmora-generate: " + problem);
        QCOMPARE(outcome.output, "");
    };
    verify({}, "No command given");
    verify({"run", "--fast", "a"}, "Unknown option --fast");
    verify({"template"}, "The name of the IP is missing");
    verify({"describe", "Mac", "fir"}, "The name of the IP should be given once, in quotes when it holds blanks");
    verify({"check"}, "The configuration file is missing");
    verify({"run", "a", "-o", "-", "--json"}, "Standard output cannot take both the output and --json");
    for (const QString& prefix : {QString(), QString("absent")}) {
        set("ORVANE_PREFIX", prefix);
        verify({"list"}, prefix.isEmpty()
                             ? "ORVANE_PREFIX is not set, it should name the directory that holds share/velmora"
                             : "ORVANE_PREFIX is 'absent', it should name the directory that holds share/velmora");
    }
}

void GenerateTest::sourceDateEpoch() {
    addFilter(FormFixture::echo);
    set("TZ", "Pacific/Auckland");
    const auto dateFor = [this](const char* value) {
        set("SOURCE_DATE_EPOCH", value);
        QFile::remove("fir.vhd");
        const Outcome outcome = generate({"fir.velmora"});
        return outcome.status == 0 ? QString(readFile("fir.vhd")).section("%%DATE%%=", 1).section('\n', 0, 0)
                                   : outcome.errors.first().trimmed();
    };
    const QString refused =
        "Processing aborted [SOURCE_DATE_EPOCH should be a whole number of seconds since 1970 or not "
        "be set] (value: ";
    QCOMPARE(dateFor("1394028479"), "05/03/2014 - 14:07"); // in UTC
    QCOMPARE(dateFor("253402300799"), "31/12/9999 - 23:59");
    QCOMPARE(dateFor("253402300800"), refused + "253402300800)");
    QCOMPARE(dateFor(""), refused + ")");
    QCOMPARE(dateFor("1 "), refused + "1 )");
}

void GenerateTest::completion() {
    useShippedCatalogue();
    _prefix->write("zone.velmora", "");
    QDir().mkpath("zoo");
    QStringList replies = QString(complete({"check", "z"}).output).split('\n', Qt::SkipEmptyParts);
    replies.sort();
    QCOMPARE(replies, QStringList({"zone.velmora", "zoo/"}));
    // A uid may hold any characters, and the shell expands the words that it completes.
    set("ORVANE_PREFIX", _prefix->path());
    _prefix->addIP("Other/hostile", "name A\ncategory C\nuid $(>ran)\ncompany Other\nvariants A\n");
    _prefix->addIP("Other/plain", "name B\ncategory C\nuid PLAIN-1.0\ncompany Other\nvariants A\n");
    QCOMPARE(complete({"template", "pl"}).output, "PLAIN-1.0\n");
    QCOMPARE(complete({"template", ""}).output, "PLAIN-1.0\n");
    QVERIFY(!QFileInfo::exists("ran"));
}

/// The files of a directory are replaced together: one that cannot be written keeps the others.
void GenerateTest::failingFileKeepsTheOthers() {
    _prefix->addBridge("def generate(argDict):\n  return {'a.vhd': 'new', 'b.vhd': 'new'}\n");
    _prefix->write("bridge.velmora",
                   "company = Orvane\nname = APB slave to serial master\nuid = UID\n\nEntity = rtl\n");
    _prefix->write("rtl/a.vhd", "earlier");
    QDir().mkpath("rtl/b.vhd");
    const Outcome outcome = generate({"bridge.velmora"});
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.errors.first().contains("Unable to write file (filename: rtl/b.vhd, reason: Is a directory)"));
    QCOMPARE(filesOf("rtl"), (QMap<QString, QByteArray>{{"a.vhd", "earlier"}}));
    QDir().rmdir("rtl/b.vhd");
    QCOMPARE(generate({"bridge.velmora"}).status, 0);
    QCOMPARE(filesOf("rtl"), (QMap<QString, QByteArray>{{"a.vhd", "new\n"}, {"b.vhd", "new\n"}}));
    _prefix->addBridge("def generate(argDict):\n  return {}\n");
    const QJsonObject nothing = generate({"bridge.velmora", "--json"}).json().first().toObject();
    QVERIFY(nothing["succeeded"].toBool() && !nothing.contains("output"));
}

void GenerateTest::oneFailureStopsNoOther() {
    addFilter(FormFixture::echo);
    addFilter(FormFixture::echo, "second", "second.velmora");
    _prefix->write("wrong.velmora", readFile("fir.velmora").replace("InputDataWidth = 12", "InputDataWidth = 40"));
    const Outcome outcome = generate({"missing.velmora", "fir.velmora", "wrong.velmora", "second.velmora", "--json"});
    QCOMPARE(outcome.status, 1);
    QStringList succeeded;
    for (const QJsonValue report : outcome.json())
        succeeded += report["file"].toString() + "=" + QVariant(report["succeeded"].toBool()).toString();
    QCOMPARE(succeeded.join(' '), "missing.velmora=false fir.velmora=true wrong.velmora=false second.velmora=true");
    QCOMPARE(
        outcome.errors,
        (QStringList{"  Unable to open configuration file (filename: missing.velmora, reason: There is no such file)",
                     "Failed: missing.velmora",
                     "  '40' cannot be the value of 'InputDataWidth', expected a whole number from 8 to 18 (filename: "
                     "wrong.velmora, line: 10)",
                     "Failed: wrong.velmora"}));
    QVERIFY(readFile("fir.vhd").contains("%%ENTITY_NAME%%=fir\n") && readFile("second.vhd").contains("=second\n"));
}

/// Whatever a script leaves behind, down to a process that is no more.
void GenerateTest::filesAreApart() {
    addFilter("import os, sys\nname = None\ndef generate(argDict):\n  name = argDict['%%ENTITY_NAME%%']\n"
              "  if name == 'dies': os.kill(os.getpid(), 11)\n"
              "  if name == 'second': return str(hasattr(__builtins__, 'left')) + str('left' in sys.modules)\n"
              "  __builtins__.left = sys.modules['left'] = sys\n  os.chdir('/')\n  raise ValueError()\n");
    for (const char* name : {"fails", "dies", "second"})
        _prefix->write(QString(name) + ".velmora",
                       readFile("fir.velmora").replace("= fir\n", QByteArray("= ") + name + "\n"));
    const Outcome outcome = generate({"fails.velmora", "dies.velmora", "second.velmora", "-o", ".", "-q"});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.filter("signal").size(), 1);
    QCOMPARE(outcome.errors.filter("Failed: "), (QStringList{"Failed: fails.velmora", "Failed: dies.velmora"}));
    QCOMPARE(readFile("second.vhd"), "FalseFalse\n");
}

void GenerateTest::settingsAreLeftAlone() {
    addFilter(FormFixture::echo);
    const QByteArray settings = "[SystolicLeaf]\nEntity=other\nTruncation=3\n";
    _prefix->write("config/Orvane/Velmora.conf", settings);
    set("XDG_CONFIG_HOME", _prefix->path("config"));
    set("QT_QPA_PLATFORM", "xcb"); // without a display this one would end the program
    QCOMPARE(generate({"fir.velmora"}).status, 0);
    QVERIFY(run({"template", "Systolic"}).output.contains("\nEntity =\n"));
    QCOMPARE(filesOf("config"), (QMap<QString, QByteArray>{{"Orvane/Velmora.conf", settings}}));
}

void GenerateTest::brokenNeighbours() {
    addFilter(FormFixture::echo);
    _prefix->addIP("Orvane/broken", "name Broken\n\n");
    _prefix->addIP("Other/mute", "name Mute\ncategory C\nuid MUTE\ncompany Other\nvariants A\n");
    QCOMPARE(generate({"fir.velmora"}).status, 0);
    const Outcome list = run({"list"});
    QCOMPARE(list.status, 1);
    QVERIFY(list.output.contains("Mute") && list.output.contains("Systolic"));
    QVERIFY(list.errors.first().startsWith("Invalid line: ''"));
    QCOMPARE(run({"template", "Mute"}).errors, QStringList("IP 'Mute' of Other has no form, it cannot be generated"));
    _prefix->write("gone.velmora", "company = Other\nname = Gone\nuid = GONE\n");
    const QStringList errors = generate({"gone.velmora"}).errors;
    QVERIFY(errors.first().startsWith("  Invalid line: ''"));
    QCOMPARE(
        errors.at(1),
        "  No installed IP is 'Gone' of Other, 'velmora-generate list' shows those that are (filename: gone.velmora, "
        "line: 2)");
}

/// A repository of the examples and their Makefile, which generates again what is older than its configuration.
void GenerateTest::exampleRepository() {
    useShippedCatalogue();
    copyExamples();
    set("GENERATE", VELMORA_GENERATE);
    const auto make = [this] { return run({"-s"}, "make"); };
    const Outcome first = make();
    QCOMPARE(first.errors, QStringList());
    QCOMPARE(first.status, 0);
    for (const QString& name : Examples::names())
        QVERIFY2(QFileInfo(name + ".vhd").isFile() || QFileInfo(QString("%1/rtl/%1.vhd").arg(name)).isFile(),
                 qPrintable(name));

    const auto setTime = [](const QString& name, int seconds) {
        QFile file(name);
        return file.open(QIODevice::ReadWrite) &&
               file.setFileTime(QDateTime::currentDateTime().addSecs(seconds), QFileDevice::FileModificationTime);
    };
    for (const QString& name : Examples::names())
        QVERIFY(setTime(name + ".velmora", name == "fir_systolic" ? 100 : -100));
    _prefix->write("fir_mac.vhd", "kept");
    _prefix->write("fir_systolic.vhd", "old");
    QCOMPARE(make().status, 0);
    QCOMPARE(readFile("fir_mac.vhd"), "kept");
    QVERIFY(readFile("fir_systolic.vhd").contains("entity fir_systolic is"));
}

VELMORA_TEST_MAIN(GenerateTest)
#include "tst_generate.moc"
