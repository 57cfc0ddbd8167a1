#include <support/ConsoleRecorder.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/generation/GeneratorScript.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

#include <QDir>
#include <QTest>
#include <QVariant>

#include <csignal>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <variant>

using Velmora::GeneratedFiles;

namespace {

const QString failedLine = QStringLiteral("E: Failed to generate the IP, please contact the provider.");

} // namespace

/// The embedded interpreter: what scripts are given, what is taken back, and what remains when they misbehave.
class RunnerTest : public QObject {
    Q_OBJECT

private:
    struct Outcome {
        std::optional<GeneratedFiles> files;
        QString exception; ///< "Kind: message"
        QStringList console;
    };

    Outcome run(const QByteArray& script, const std::string& entity = "top");

    std::unique_ptr<TestPrefix> _prefix;

private Q_SLOTS:
    void init() { _prefix = std::make_unique<TestPrefix>(); }
    void cleanup() { _prefix.reset(); }

    void argumentsAndResults();
    void failures_data();
    void failures();
    void firstTraceLineIsTheError();
    void textsOfBothKindsReachTheConsole();
    void nothingSurvivesANormalRun();
    void failedRunLeavesNoneOfTheRunnersNames();
    void optionalFunctions();
    void wrongAnswers_data();
    void wrongAnswers();
    void scriptFileErrors();
    void userEnvironmentIsIgnored();
    void signalHandlersStay();
};

RunnerTest::Outcome RunnerTest::run(const QByteArray& script, const std::string& entity) {
    const QString filename = _prefix->writeScript("script.py", script);
    ConsoleRecorder recorder;
    Outcome outcome;
    try {
        const Velmora::GeneratorScript generator(filename.toStdString());
        Velmora::ArgumentDictionary arguments;
        arguments.add("%%ENTITY_NAME%%", entity);
        outcome.files = generator.generateFiles(arguments);
    } catch (const Brindle::Exception& exception) {
        outcome.exception = dynamic_cast<const Brindle::Critical*>(&exception) ? "Critical: " : "Fatal: ";
        outcome.exception += exception.what();
    }
    outcome.console = recorder.lines();
    return outcome;
}

void RunnerTest::argumentsAndResults() {
    const Outcome outcome =
        run("name = __name__\n" + returning("{'b.vhd': repr(argDict), '\\xc3\\xa9': '<' + name + '>', "
                                            "'B': ''.join(chr(n) for n in range(256))}"),
            "caf\xC3\xA9 \"100%\"");
    QCOMPARE(outcome.exception, QString());
    QCOMPARE(outcome.console, QStringList());
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    const GeneratedFiles expected{{"B", QString::fromLatin1(everyByte.data(), everyByte.size())},
                                  {"b.vhd", R"({'%%ENTITY_NAME%%': 'caf\xc3\xa9 "100%"'})"},
                                  {QString::fromUtf8("\xC3\xA9"), "<>"}};
    QVERIFY(*outcome.files == expected);
}

void RunnerTest::failures_data() {
    const TestTable<QByteArray, QString, int> table("script", "exception", "errorCount");
    const char* nothing = "Fatal: Should not be here";
    const char* noDictionary = "Fatal: 'fileDict' is not a dictionnary";
    const char* noString = "Fatal: Not a string";
    table.row("syntax error", "def generate(argDict:\n", nothing, 2); // its own, and that of the missing generate
    table.row("raises while loading", "raise ValueError('x')\n", nothing, 2);
    table.row("no generate", "x = 1\n", nothing, 1);
    table.row("generate raises", "def generate(argDict):\n  raise ValueError('x')\n", nothing, 1);
    table.row("sys.exit", "import sys\ndef generate(argDict):\n  sys.exit(3)\n", nothing, 1);
    table.row("nothing returned", returning(""), noDictionary, 0);
    table.row("subclass of dict", "class D(dict): pass\n" + returning("D(a='b')"), noDictionary, 0);
    table.row("unicode as key", returning("{u'a': 'a'}"), noString, 0);
    table.row("unicode as content", returning("{'a': u'b'}"), noString, 0);
    table.row("latin-1 bytes in a comment", "# \xe9\n" + returning("{1: ''}"), noString, 0);
}

void RunnerTest::failures() {
    QFETCH(QByteArray, script);
    QFETCH(int, errorCount);
    const auto errorsBefore = Brindle::console.getErrorCount();
    const Outcome outcome = run(script);
    QTEST(outcome.exception, "exception");
    QCOMPARE(int(Brindle::console.getErrorCount() - errorsBefore), errorCount);
    QCOMPARE(outcome.console.filter(QRegularExpression("^E: ")), outcome.console);
    QVERIFY(!outcome.console.contains(failedLine));

    const Outcome next = run(returning("{'after': argDict['%%ENTITY_NAME%%']}"), "still works");
    QCOMPARE(next.exception, QString());
    QCOMPARE(next.files->at("after"), QStringLiteral("still works"));
    QCOMPARE(next.console, QStringList());
}

void RunnerTest::firstTraceLineIsTheError() {
    const Outcome outcome = run("def generate(argDict):\n  raise ValueError('first\\nsecond')\n");
    QCOMPARE(outcome.console,
             QStringList({"E: Traceback (most recent call last):", "E:   File \"<string>\", line 1, in <module>",
                          "E:   File \"<string>\", line 2, in generate", "E:   ValueError: firstsecond"}));
}

void RunnerTest::textsOfBothKindsReachTheConsole() {
    const Outcome outcome = run("import quarnel\n"
                                "def generate(argDict):\n"
                                "  printError('Entity name is bad.')\n"
                                "  printText('100% caf\\xc3\\xa9')\n"
                                "  printText(u'caf\\xe9')\n"
                                "  quarnel.printText(ValueError('seven'))\n"
                                "  try:\n    printText()\n"
                                "  except TypeError:\n    printText('refused')\n"
                                "  return {}\n");
    const QString cafe = QString::fromUtf8("caf\xC3\xA9");
    QCOMPARE(outcome.console, QStringList({"E: Entity name is bad.", "R: 100% " + cafe, "R: " + cafe, "R: seven",
                                           "R: refused", failedLine}));
    QVERIFY(outcome.files);
}

void RunnerTest::nothingSurvivesANormalRun() {
    const QByteArray probe = "import sys\n"
                             "found = [name for name in ('left', 'text') if name in globals()] + "
                             "[name for name in ('intruder',) if name in sys.modules] + "
                             "(['builtin'] if hasattr(__builtins__, 'intruder') else [])\n"
                             "left = text = 1\n"
                             "sys.modules['intruder'] = sys\n"
                             "__builtins__.intruder = 1\n" +
                             returning("{'found': repr(found)}");
    QCOMPARE(run(probe).files->at("found"), QStringLiteral("[]"));
    QCOMPARE(run(probe).files->at("found"), QStringLiteral("[]"));
}

void RunnerTest::failedRunLeavesNoneOfTheRunnersNames() {
    const QString before = QDir::currentPath();
    run("import os\ntext = fileDict = generate = 'old'\n__builtins__.intruder = __builtins__.abs = 1\nos.chdir('/')\n"
        "raise ValueError()\n");
    QCOMPARE(QDir::currentPath(), before);
    const Outcome outcome =
        run("found = [name for name in ('text', 'fileDict', 'generate', 'argDict') if name in globals()]\n" +
            returning("{'found': repr(found) + str(hasattr(__builtins__, 'intruder')) + str(abs(-2))}"));
    QCOMPARE(outcome.files->at("found"), QStringLiteral("[]False2"));
}

void RunnerTest::optionalFunctions() {
    const auto open = [this](const QByteArray& script) {
        return Velmora::GeneratorScript(_prefix->writeScript("script.py", script).toStdString());
    };
    Velmora::ArgumentDictionary arguments;
    arguments.add("%%N%%", "caf\xC3\xA9");
    const auto silent = open("describe_ = testBench_ = 1\n" + returning("{}"));
    QVERIFY(!silent.describe(arguments) && !silent.makeTestBench(arguments) && !silent.check(arguments));

    const auto script =
        open("def describe(argDict):\n"
             "  printText('Taps: few')\n"
             "  return [('Name', argDict['%%N%%'], ''), ('Taps', 2 ** 40, 'taps'), ('Gain', 0.5, 'dB')]\n"
             "def testBench(argDict):\n  return 'bench \\xff of ' + argDict['%%N%%']\n"
             "def check(argDict):\n  return [('Too few', ['A', 'B/0']), ('Too many', [])]\n");
    ConsoleRecorder recorder;
    const auto facts = script.describe(arguments);
    QStringList told;
    for (const Velmora::Fact& fact : *facts) {
        const QString value = std::visit([](const auto& held) { return QVariant(held).toString(); }, fact.value);
        told += fact.label + "=" + value + "=" + fact.unit;
    }
    QCOMPARE(told, QStringList({QString::fromUtf8("Name=caf\xC3\xA9="), "Taps=1099511627776=taps", "Gain=0.5=dB"}));
    QCOMPARE(script.makeTestBench(arguments)->toLatin1(), QByteArray("bench \xff of caf\xC3\xA9"));
    const auto failures = script.check(arguments);
    QCOMPARE(failures->size(), std::size_t{2});
    QCOMPARE(failures->front().message, QStringLiteral("Too few"));
    QCOMPARE(failures->front().keys, QStringList({"A", "B/0"}));
    QCOMPARE(recorder.lines(), QStringList("R: Taps: few"));
}

void RunnerTest::wrongAnswers_data() {
    const TestTable<QByteArray, QString> table("result", "exception");
    const char* described =
        "'describe' should return a list of (label, value, unit), label and unit as str, the value as "
        "int, float or str";
    table.row("nothing", "None", described);
    table.row("tuple of facts", "(('a', 1, ''),)", described);
    table.row("fact of two", "[('a', 1)]", described);
    table.row("unicode as label", "[(u'a', 1, '')]", described);
    table.row("no unit", "[('a', 1, None)]", described);
    table.row("bool as value", "[('a', True, '')]", described);
    table.row("no number", "[('a', float('nan'), '')]", described);
    table.row("number beyond all", "[('a', 2 ** 63, '')]", described);
    table.row("exception", "1 / 0", "'describe' ended by an exception");
    table.row("no function", "[]\ndescribe = 3", "'describe' ended by an exception");
    table.row("script that raises", "[]\nraise ValueError()", "The script failed before 'describe' was called");
    table.row("bench as unicode", "[]\ntestBench = lambda arguments: u''", "'testBench' should return a str");
    table.row("check of a message alone", "[]\ncheck = lambda arguments: ['x']",
              "'check' should return a list of (message, [keys]), each of them as str");
    table.row("check of a key that is no text", "[]\ncheck = lambda arguments: [('x', [1])]",
              "'check' should return a list of (message, [keys]), each of them as str");
}

void RunnerTest::wrongAnswers() {
    QFETCH(QByteArray, result);
    const QString filename = _prefix->writeScript("script.py", "def describe(argDict):\n  return " + result + "\n");
    const Velmora::GeneratorScript script(filename.toStdString());
    const Velmora::ArgumentDictionary arguments;
    ConsoleRecorder recorder;
    QString exception;
    try {
        script.describe(arguments);
        script.makeTestBench(arguments);
        script.check(arguments);
    } catch (const Brindle::Fatal& fatal) {
        exception = fatal.what();
    }
    QTEST(exception, "exception");
    const QString next = _prefix->writeScript("next.py", returning("{}"));
    QVERIFY(!Velmora::GeneratorScript(next.toStdString()).describe(arguments)); // which is not taken for its own
    QCOMPARE(run(returning("{}")).exception, QString());
}

void RunnerTest::scriptFileErrors() {
    const auto messageOf = [](const QString& filename) {
        try {
            Velmora::GeneratorScript(filename.toStdString());
        } catch (const Brindle::Fatal& exception) {
            const std::string field = exception.getField("scriptFilename");
            const bool isNamed = field.empty() || field == filename.toStdString();
            return isNamed ? QString(exception.what()) : QStringLiteral("another file");
        }
        return QStringLiteral("nothing thrown");
    };
    QCOMPARE(messageOf(_prefix->write("script.py", returning("{}"))),
             QStringLiteral("Script refused: not a sealed script"));
    QCOMPARE(messageOf(_prefix->write("script.py", _prefix->seal(returning("{}")).chopped(60))),
             QStringLiteral("Script refused: truncated or malformed"));
    QCOMPARE(messageOf(_prefix->writeScript("script.py", QByteArray("x = 1\0y = 2", 11))),
             QStringLiteral("Script holds a NUL byte"));
    const QString pipe = _prefix->path("pipe.py");
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& unreadable : {_prefix->path("absent.py"), _prefix->path("share"), pipe})
        QCOMPARE(messageOf(unreadable), QStringLiteral("Unable to open script file"));
}

void RunnerTest::userEnvironmentIsIgnored() {
    _prefix->write("quarnel.py", "raise ValueError('the wrong module')\n");
    _prefix->write("traceback.py", "raise ValueError('the wrong module')\n");
    qputenv("PYTHONHOME", "/nonexistent");
    qputenv("PYTHONPATH", QFile::encodeName(_prefix->path()));
    qputenv("PYTHONINSPECT", "1");
    const Outcome outcome = run("import os, sys\n" +
                                returning("{'a': os.sep + str('site' in sys.modules) + str(sys.dont_write_bytecode)}"));
    for (const char* name : {"PYTHONHOME", "PYTHONPATH", "PYTHONINSPECT"})
        qunsetenv(name);
    QCOMPARE(outcome.exception, QString());
    QCOMPARE(outcome.console, QStringList());
    QCOMPARE(outcome.files->at("a"), QStringLiteral("/FalseTrue"));
}

void RunnerTest::signalHandlersStay() {
    struct sigaction before {};
    struct sigaction after {};
    sigaction(SIGINT, nullptr, &before);
    run("import signal\n" + returning("{}"));
    sigaction(SIGINT, nullptr, &after);
    QVERIFY(after.sa_handler == before.sa_handler);
}

QTEST_GUILESS_MAIN(RunnerTest)
#include "tst_runner.moc"
