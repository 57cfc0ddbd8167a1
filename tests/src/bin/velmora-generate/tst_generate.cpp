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
        QString statement = QString::fromStdString(page.getGeneration(BRINDLE_HERE).getArguments().getStatement());
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
    Outcome run(const QStringList& arguments, const QString& program = VELMORA_GENERATE) const;
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
    void sameRefusalsAsTheWindow_data();
    void sameRefusalsAsTheWindow();
    void catalogueCommands();
    void descriptions_data() { Examples::addRows(); }
    void descriptions();
    void unwritableOutput();
    void wrongUsage_data();
    void wrongUsage();
    void outputPlaces();
    void outputsInTheWay();
    void failuresKeepTheOutput_data();
    void failuresKeepTheOutput();
    void failingFileKeepsTheOthers();
    void protectedRegions();
    void oneFailureStopsNoOther();
    void hostileConfigurations_data();
    void hostileConfigurations();
    void settingsAreLeftAlone();
    void brokenNeighbours();
    void noInstallation();
    void sourceDateEpoch_data();
    void sourceDateEpoch();
    void exampleRepository();
    void documentedExample();
    void completion_data();
    void completion();
    void completionRunsNothing();
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

GenerateTest::Outcome GenerateTest::run(const QStringList& arguments, const QString& program) const {
    QProcess process;
    process.setProcessEnvironment(_environment);
    process.start(program, arguments);
    const bool hasEnded = process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit;
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

void GenerateTest::sameRefusalsAsTheWindow_data() {
    const TestTable<QString, QByteArray, QByteArray, bool> table("name", "before", "after", "isChecked");
    table.row("check of a form", "fir_systolic", "Entity = fir_systolic", "Entity =", true);
    table.row("check of the last field", "fir_transpose_symmetric", "27, 27", "27", true);
    table.row("arguments", "fir_mac", "45, 211", "4.5, 211", true);
    table.row("value of a table", "scope_bus", "Basic & Edges", "Basic", true);
    table.row("script", "serdes_link", "= serdes_link", "= entity", false);
    table.row("script of the bridge", "spi_bridge", "= spi_bridge", "= 1bridge", false);
}

void GenerateTest::sameRefusalsAsTheWindow() {
    QFETCH(QString, name);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(bool, isChecked);
    useShippedCatalogue();
    _prefix->write("wrong.velmora", Examples::content(name).replace(before, after));
    const auto page = openShipped("wrong.velmora");
    PathDialogs dialogs;
    dialogs.answer = "window";
    ConsoleRecorder recorder;
    QTest::mousePress(page->findChild<QPushButton*>("Generate"), Qt::LeftButton);
    QStringList windowErrors = recorder.errors().replaceInStrings(QRegularExpression("^E: +"), "");
    QVERIFY(!windowErrors.isEmpty());

    const QStringList told = windowErrors + QStringList("Failed: wrong.velmora");
    const Outcome outcome = generate({"wrong.velmora", "-o", "output"});
    QCOMPARE(withoutIndents(outcome.errors), told);
    QCOMPARE(outcome.status, 1);
    QVERIFY(outcome.output.contains("Generating failed") || outcome.output.contains("Generating Failed"));
    QVERIFY(!QFileInfo::exists("output"));
    const Outcome check = run({"check", "wrong.velmora"});
    QCOMPARE(check.status, isChecked ? 1 : 0);
    QCOMPARE(withoutIndents(check.errors), isChecked ? told : QStringList());
}

void GenerateTest::catalogueCommands() {
    useShippedCatalogue();
    const Outcome list = run({"list"});
    QCOMPARE(list.status, 0);
    const QList<QByteArray> lines = list.output.split('\n');
    QCOMPARE(lines.size(), 11); // titles, nine IPs, the end
    QCOMPARE(lines.at(3), "SER/DES                     Interface/Serial  Orvane   FERROLITE CALDERA NIMBUS");
    const QJsonObject ip = run({"list", "--json"}).json().at(2).toObject();
    const QJsonObject expected{{"name", "SER/DES"},
                               {"company", "Orvane"},
                               {"uid", "SERDESINTERFACE"},
                               {"category", "Interface/Serial"},
                               {"variants", QJsonArray{"FERROLITE", "CALDERA", "NIMBUS"}}};
    QCOMPARE(ip, expected);
    const QByteArray description = run({"describe", "startupscope"}).output;
    QVERIFY(description.contains("InputCount: Input line count\n  a whole number from 2 to 240\n  reset value: 2\n"));
    QVERIFY(description.contains("TriggerCount, each with\n  Alias\n"));
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
    const Velmora::Generation generation = page->getGeneration(BRINDLE_HERE);
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

    // What is printed must not end up in the next file that is opened.
    addFilter(FormFixture::echo);
    QCOMPARE(run({"-c", QStringLiteral(VELMORA_GENERATE) + " run fir.velmora -o closed.vhd <&- >&- 2>&-"}, "sh").status,
             1);
    QCOMPARE(generate({"fir.velmora", "-o", "open.vhd"}).status, 0);
    QCOMPARE(readFile("closed.vhd"), readFile("open.vhd"));
}

void GenerateTest::wrongUsage_data() {
    const TestTable<QStringList, QString> table("arguments", "problem");
    table.row("nothing", {}, "No command given");
    table.row("command", {"generate"}, "Unknown command 'generate'");
    table.row("option", {"run", "--fast", "a"}, "Unknown option --fast");
    table.row("option of another command", {"list", "-o", "a"}, "Unknown option -o");
    table.row("no value", {"run", "a", "-o"}, "Option -o needs a value");
    table.row("operand too many", {"list", "a"}, "Unexpected 'a'");
    table.row("no IP", {"template"}, "The name of the IP is missing");
    table.row("two words", {"describe", "Mac", "fir"},
              "The name of the IP should be given once, in quotes when it holds blanks");
    table.row("no file", {"check"}, "The configuration file is missing");
    table.row("standard output", {"run", "a", "-o", "-"},
              "The output should be a file or a directory, /dev/stdout shows it");
    table.row("empty output", {"run", "a", "-o", ""}, "The output has an empty name");
    table.row("no directory", {"run", "a", "b", "-o", "c"},
              "'c' should be a directory, which takes the output of several files");
}

void GenerateTest::wrongUsage() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, problem);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors, QStringList("velmora-generate: " + problem + "; see velmora-generate --help"));
    QCOMPARE(outcome.output, "");
}

void GenerateTest::outputPlaces() {
    useShippedCatalogue();
    copyExamples();
    QDir().mkpath("in/other");
    for (const char* name : {"fir_mac.velmora", "spi_bridge.velmora"})
        QFile::rename(name, QString("in/") + name);
    QCOMPARE(generate({"in/fir_mac.velmora"}).output.split('\n').at(3), "  Written to in/fir_mac.vhd");
    QVERIFY(readFile("in/fir_mac.vhd").contains("entity fir_mac is"));
    QCOMPARE(generate({"in/spi_bridge.velmora", "-q"}).output, "");
    QVERIFY(QFileInfo("in/spi_bridge/rtl/spi_bridge.vhd").isFile());
    QCOMPARE(generate({"in/fir_mac.velmora", "in/spi_bridge.velmora", "-o", "in/other"}).status, 0);
    QCOMPARE(filesOf("in/other/fir_mac.vhd"), filesOf("in/fir_mac.vhd"));
    QCOMPARE(filesOf("in/other/spi_bridge"), filesOf("in/spi_bridge"));

    const QString foreign = QStringLiteral("\u00e9\u4e16.velmora");
    _prefix->write(foreign, Examples::content("fir_mac"));
    set("LC_ALL", "C");
    QCOMPARE(generate({foreign, "--output", foreign + ".vhd"}).errors, QStringList());
    QCOMPARE(filesOf(foreign + ".vhd"), filesOf("in/fir_mac.vhd"));

    // ".." is the file system's.
    QVERIFY(QDir().mkpath("elsewhere/deep") && QFile::link(_prefix->path("elsewhere/deep"), "link"));
    QCOMPARE(generate({"in/fir_mac.velmora", "-o", "link/../linked.vhd"}).status, 0);
    QCOMPARE(filesOf("elsewhere/linked.vhd"), filesOf("in/fir_mac.vhd"));

    // The bridge may be without a name, but then its output must have one.
    _prefix->write("bare.velmora", Examples::content("spi_bridge").replace("= spi_bridge", "="));
    const Outcome outcome = generate({"bare.velmora"});
    QCOMPARE(outcome.errors, (QStringList{"    Entity name not specified!", "Failed: bare.velmora"}));
}

void GenerateTest::outputsInTheWay() {
    addFilter(FormFixture::echo);
    QDir().mkpath("directory");
    const auto refusalOf = [this](const QStringList& arguments) {
        const Outcome outcome = generate(arguments);
        return outcome.status == 1 ? outcome.errors.first().trimmed() : QString();
    };
    QCOMPARE(refusalOf({"fir.velmora", "-o", "fir.velmora"}),
             "Processing aborted [Output would replace the configuration fir.velmora]");
    QCOMPARE(refusalOf({"fir.velmora", "-o", "no/such.vhd"}).section(" (", 0, 0),
             "Processing aborted [Unable to open file no/such.vhd]");
    QCOMPARE(refusalOf({"fir.velmora", "-o", "directory"}).section(" (", 0, 0),
             "Processing aborted [Unable to open file directory]");
    QCOMPARE(refusalOf({"fir.velmora", "-o", "none/"}).section(" (", 0, 0),
             "Processing aborted [Unable to open file none/]");
    QVERIFY(!QFileInfo::exists("none"));
    _prefix->write("copy.velmora", readFile("fir.velmora"));
    QCOMPARE(
        refusalOf({"fir.velmora", "copy.velmora"}),
        "Processing aborted [Another configuration has the output fir.vhd too, give their entities different names]");
    QVERIFY(!filesOf("fir.vhd").isEmpty()); // of the first one
    QCOMPARE(generate({"fir.velmora", "-o", "/dev/null"}).status, 0);
    QVERIFY(!QFileInfo("/dev/null").isFile());
}

void GenerateTest::failuresKeepTheOutput_data() {
    const TestTable<QByteArray, QString> table("script", "error");
    const QString provider = "Failed to generate the IP, please contact the provider.";
    table.row("reports an error and returns", "def generate(argDict):\n  printError('Too wide')\n  return 'x'\n",
              "Too wide|" + provider);
    table.row("raises", "def generate(argDict):\n  raise ValueError('no')\n",
              "Traceback (most recent call last):|Processing aborted [Should not be here]");
    table.row("markers", "def generate(argDict):\n  return 'x\\n`protect end\\n'\n",
              "Processing aborted [No \"`protect begin\" found]");
}

void GenerateTest::failuresKeepTheOutput() {
    QFETCH(QByteArray, script);
    QFETCH(QString, error);
    addFilter(script);
    _prefix->write("fir.vhd", "earlier");
    const Outcome outcome = generate({"fir.velmora"});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(withoutIndents(outcome.errors).join('|'), error + "|Failed: fir.velmora");
    QVERIFY(outcome.output.endsWith("    Generating failed\n"));
    QCOMPARE(readFile("fir.vhd"), "earlier");
    QCOMPARE(QDir().entryList({"fir*"}), (QStringList{"fir.velmora", "fir.vhd"})); // nothing left behind
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
    QVERIFY(outcome.errors.first().contains("Unable to open file rtl/b.vhd"));
    QCOMPARE(filesOf("rtl"), (QMap<QString, QByteArray>{{"a.vhd", "earlier"}}));
    QDir().rmdir("rtl/b.vhd");
    QCOMPARE(generate({"bridge.velmora"}).status, 0);
    QCOMPARE(filesOf("rtl"), (QMap<QString, QByteArray>{{"a.vhd", "new\n"}, {"b.vhd", "new\n"}}));
}

void GenerateTest::protectedRegions() {
    addFilter("def generate(argDict):\n  return 'open\\n`protect begin\\nsecret\\n`protect end\\n'\n");
    QCOMPARE(generate({"fir.velmora"}).status, 0);
    const QByteArray output = readFile("fir.vhd");
    QVERIFY(output.startsWith("open\n`protect ") && !output.contains("secret"));
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

void GenerateTest::hostileConfigurations_data() {
    const TestTable<QByteArray, QString> table("entity", "message");
    const QString character = "Processing aborted [Unsupported character in value]";
    const QString name = "Processing aborted [Entity name makes no file name, name the output with --output]";
    table.row("closes the quote", "x', 'a': open('ran', 'w').write('x') or '", character);
    table.row("NUL", QByteArray("\"x\\x00y\""), name);
    table.row("climbs out", "../ran", name);
    table.row("absolute", "/tmp/ran", name);
}

void GenerateTest::hostileConfigurations() {
    QFETCH(QByteArray, entity);
    QFETCH(QString, message);
    addFilter("open('ran', 'w')\n" + FormFixture::echo, entity, "in/fir.velmora");
    const Outcome outcome = generate({"in/fir.velmora"});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors.first().trimmed().section(" (", 0, 0), message);
    QCOMPARE(filesOf("in").keys(), QStringList("fir.velmora"));
    QVERIFY(!QFileInfo::exists("ran") && !QFileInfo::exists("ran.vhd"));
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

void GenerateTest::noInstallation() {
    for (const QString& prefix : {QString(), QString("absent")}) {
        set("ORVANE_PREFIX", prefix);
        const Outcome outcome = run({"list"});
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.errors.first().startsWith("velmora-generate: ORVANE_PREFIX is "));
        QCOMPARE(outcome.output, "");
    }
}

void GenerateTest::sourceDateEpoch_data() {
    const TestTable<QByteArray, QString> table("value", "date"); // date: empty for an error
    table.row("begin", "0", "01/01/1970 - 00:00");
    table.row("in UTC", "1394028479", "05/03/2014 - 14:07");
    table.row("last", "253402300799", "31/12/9999 - 23:59");
    table.row("beyond", "253402300800", "");
    for (const char* wrong : {"", "now", "1.5", "-1", "+1", " 1", "1 ", "0x10", "99999999999999999999"})
        table.row(qPrintable("'" + QString(wrong) + "'"), wrong, "");
}

void GenerateTest::sourceDateEpoch() {
    QFETCH(QByteArray, value);
    QFETCH(QString, date);
    addFilter(FormFixture::echo);
    set("SOURCE_DATE_EPOCH", value);
    set("TZ", "Pacific/Auckland");
    const Outcome outcome = generate({"fir.velmora"});
    const QByteArray output = readFile("fir.vhd");
    if (date.isEmpty()) {
        QCOMPARE(outcome.errors.first().trimmed(),
                 "Processing aborted [SOURCE_DATE_EPOCH should be a whole number of seconds since 1970 or not be set] "
                 "(value: " +
                     value + ")");
        QVERIFY(output.isNull());
        return;
    }
    QVERIFY(output.contains("%%DATE%%=" + date.toUtf8() + "\n"));
    QCOMPARE(generate({"fir.velmora"}).status, 0);
    QCOMPARE(readFile("fir.vhd"), output);
}

/// A repository of nine configurations and a Makefile, built without a display.
void GenerateTest::exampleRepository() {
    useShippedCatalogue();
    copyExamples();
    set("GENERATE", VELMORA_GENERATE);
    set("SOURCE_DATE_EPOCH", "0");
    const auto make = [this] { return run({"-s"}, "make"); };
    const Outcome first = make();
    QCOMPARE(first.errors, QStringList());
    QCOMPARE(first.status, 0);
    for (const QString& name : Examples::names())
        QVERIFY2(QFileInfo(name == "spi_bridge" ? "spi_bridge/rtl/spi_bridge.vhd" : name + ".vhd").isFile(),
                 qPrintable(name));

    // One configuration changes; the outputs are all made older, so that a new one shows.
    const QDateTime past = QDateTime::currentDateTime().addSecs(-100);
    QStringList outputs = QDir().entryList({"*.vhd"});
    outputs += "spi_bridge/.generated";
    const auto timeOf = [](const QString& name) { return QFileInfo(name).lastModified(); };
    const auto setTime = [](const QString& name, const QDateTime& time) {
        QFile file(name);
        return file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime);
    };
    for (const QString& output : outputs)
        QVERIFY(setTime(output, past));
    for (const QString& name : Examples::names())
        QVERIFY(setTime(name + ".velmora", past.addSecs(-100)));
    const QByteArray before = readFile("fir_systolic.vhd");
    _prefix->write("fir_systolic.velmora", Examples::content("fir_systolic").replace("400", "401"));
    QCOMPARE(make().status, 0);
    QStringList renewed;
    for (const QString& output : outputs) {
        if (timeOf(output) > past.addSecs(1))
            renewed += output;
    }
    QCOMPARE(renewed, QStringList("fir_systolic.vhd"));
    QVERIFY(readFile("fir_systolic.vhd") != before);
}

/// The page shows an example as it is.
void GenerateTest::documentedExample() {
    QByteArray shown;
    for (const QByteArray& line : Examples::content("scope_bus").trimmed().split('\n'))
        shown += line.isEmpty() ? "\n" : "    " + line + "\n";
    const QByteArray page = readFile(VELMORA_CONFIGURATIONS_PAGE);
    QVERIFY(page.contains(shown));
    for (const QString& name : Examples::names())
        QVERIFY2(page.contains("(examples/" + name.toUtf8() + ".velmora)"), qPrintable(name));
}

void GenerateTest::completion_data() {
    const TestTable<QStringList, QStringList> table("words", "replies");
    table.row("command", {"de"}, {"describe"});
    table.row("IP by uid", {"template", "firt"}, {"FIRTRANSPOSE", "FIRTRANSPOSEDUAL", "FIRTRANSPOSESYMMETRIC"});
    table.row("option", {"run", "--o"}, {"--output"});
    table.row("configurations and directories", {"check", "z"}, {"zone.velmora", "zoo/"});
    table.row("any file", {"run", "a", "-o", "z"}, {"zone.velmora", "zone.vhd", "zoo"});
}

void GenerateTest::completion() {
    QFETCH(QStringList, words);
    useShippedCatalogue();
    _prefix->write("zone.velmora", "");
    _prefix->write("zone.vhd", "");
    QDir().mkpath("zoo");
    const Outcome outcome = complete(words);
    QCOMPARE(outcome.errors, QStringList());
    QStringList replies = QString(outcome.output).split('\n', Qt::SkipEmptyParts);
    replies.sort();
    QTEST(replies, "replies");
}

/// A uid may hold any characters, and the shell expands the words that it completes.
void GenerateTest::completionRunsNothing() {
    _prefix->addIP("Other/hostile", "name A\ncategory C\nuid $(>ran)\ncompany Other\nvariants A\n");
    _prefix->addIP("Other/plain", "name B\ncategory C\nuid PLAIN-1.0\ncompany Other\nvariants A\n");
    QCOMPARE(complete({"template", ""}).output, "PLAIN-1.0\n");
    QVERIFY(!QFileInfo::exists("ran"));
}

VELMORA_TEST_MAIN(GenerateTest)
#include "tst_generate.moc"
