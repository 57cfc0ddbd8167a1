#include <bench/Least.h>
#include <support/TestPrefix.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/ips/filters/MacFirLeaf.h>
#include <velmora/rules/ArgumentDictionary.h>
#include <velmora/rules/Common.h>

#include <Brindle/widgets/FileDialog.h>

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <sstream>
#include <unistd.h>
#include <vector>

// One generation with the program's forms, from pressing Generate to "Generating done", beside the same script with the
// same arguments in a python2.7 process of its own: bench_generation PYTHON, with ORVANE_PREFIX set.

namespace {

constexpr int roundCount = 30;

/// A form and what its script is given.
struct Subject {
    const char* label;
    const char* directory;                          ///< Of the IP, below the provider's.
    const char* result;                             ///< Name of the variable that the script's call fills.
    std::function<std::string(QWidget& page)> fill; ///< Fills the form in; gives the statement that defines `argDict`.
};

std::string fillBridge(QWidget& page) {
    page.findChild<QLineEdit*>("Entity")->setText("bridge");
    return Velmora::ArgumentDictionary().add("%%ENTITY_NAME%%", "bridge").getStatement();
}

std::string fillFilter(QWidget& page) {
    QStringList coefficients;
    for (int number = 0; number < 160; ++number)
        coefficients += QString::number(number - 80);
    page.findChild<QLineEdit*>("Entity")->setText("filter");
    page.findChild<QSpinBox*>("InputDataWidth")->setValue(12);
    page.findChild<QSpinBox*>("OutputDataWidth")->setValue(16);
    page.findChild<QSpinBox*>("CoefficientWidth")->setValue(12);
    page.findChild<QSpinBox*>("TapCount")->setValue(coefficients.size());
    page.findChild<QSpinBox*>("DSPCount")->setValue(8);
    page.findChild<QTextEdit*>("Coefficients")->setPlainText(coefficients.join(';'));
    return page.findChild<Velmora::MacFirLeaf*>()->getArguments().getStatement();
}

[[noreturn]] void fail(const std::string& problem) {
    std::fprintf(stderr, "bench_generation: %s\n", problem.c_str());
    std::exit(1);
}

/// Runs the script in the file that it is given, and prints the seconds from its first line's compilation to the
/// result.
QByteArray makeBareProgram(const std::string& statement, const char* result) {
    return "import sys, time, types\nquarnel = types.ModuleType('quarnel')\n"
           "def printError(text): sys.exit(text)\ndef printText(text): pass\n"
           "quarnel.printError, quarnel.printText = printError, printText\nsys.modules['quarnel'] = quarnel\n"
           "start = time.time()\nexecfile(sys.argv[1])\n" +
           QByteArray::fromStdString(statement) + "\n" + result +
           " = generate(argDict)\nsys.stdout.write(repr(time.time() - start))\n";
}

void writeFile(const QString& filename, const QByteArray& content) {
    QFile file(filename);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) < 0)
        fail("cannot write " + filename.toStdString());
}

void measure(const Subject& subject, const QString& python, const QTemporaryDir& folder) {
    const std::string directory = qgetenv("ORVANE_PREFIX").toStdString() + "/share/velmora/Orvane/" + subject.directory;
    Velmora::IPLeaf page(directory + "/config");
    const std::string statement = subject.fill(page);

    // What the forms print is not of interest, but has to be looked at.
    const std::ostringstream console;
    std::streambuf* const standardOutput = std::cout.rdbuf(console.rdbuf());
    auto* button = page.findChild<QPushButton*>("Generate");
    const double pressToDone = leastOf(roundCount, [button] { QTest::mousePress(button, Qt::LeftButton); });
    std::cout.rdbuf(standardOutput);
    if (console.str().find("Generating done") == std::string::npos)
        fail(std::string(subject.label) + " did not generate:\n" + console.str());

    const QString program = folder.filePath("bare.py");
    const QString script = folder.filePath("generator.py");
    writeFile(program, makeBareProgram(statement, subject.result));
    writeFile(script, QByteArray::fromStdString(Velmora::getDecrypted(
                          readFile(QString::fromStdString(page.getScriptFilename())).toStdString())));
    std::vector<double> scriptTimes;
    const double bareProcess = leastOf(roundCount, [&] {
        QProcess process;
        process.start(python, {"-E", "-S", "-B", program, script});
        if (!process.waitForFinished() || process.exitCode() != 0)
            fail(process.readAllStandardError().toStdString());
        scriptTimes.push_back(process.readAllStandardOutput().toDouble() * 1000);
    });
    const double scriptTime = *std::ranges::min_element(scriptTimes);
    std::printf("%-46s %10.2f %10.2f %10.2f %10.2f\n", subject.label, pressToDone, bareProcess, scriptTime,
                pressToDone - scriptTime);
}

long residentKiB() {
    QFile file(QStringLiteral("/proc/self/statm"));
    const QByteArray pages = file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1) : QByteArray();
    return pages.toLong() * sysconf(_SC_PAGESIZE) / 1024;
}

/// What each of many generations in a row leaves in memory.
void measureGrowth(const Subject& subject) {
    constexpr int warmUpCount = 50; // what is kept for good is there then
    constexpr int generationCount = 300;
    const std::string directory = qgetenv("ORVANE_PREFIX").toStdString() + "/share/velmora/Orvane/" + subject.directory;
    Velmora::IPLeaf page(directory + "/config");
    subject.fill(page);
    const std::ostringstream console;
    std::streambuf* const standardOutput = std::cout.rdbuf(console.rdbuf());
    long before = 0;
    for (int round = 0; round < warmUpCount + generationCount; ++round) {
        if (round == warmUpCount)
            before = residentKiB();
        QTest::mousePress(page.findChild<QPushButton*>("Generate"), Qt::LeftButton);
    }
    std::cout.rdbuf(standardOutput);
    std::printf("%-46s %10.2f KiB kept by each of %d generations\n", subject.label,
                static_cast<double>(residentKiB() - before) / generationCount, generationCount);
}

} // namespace

int main(int argc, char** argv) {
    const auto application = Velmora::createApplication(argc, argv, true);
    if (argc != 2)
        fail("usage: bench_generation PYTHON");
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    Brindle::FileDialog::setSaveFileNameFunction([&folder](auto&&...) { return folder.filePath("generated.vhd"); });
    Brindle::FileDialog::setDirectoryFunction([&folder](auto&&...) { return folder.filePath("generated"); });
    std::printf("%-46s %10s %10s %10s %10s\n", "one generation, least ms", "press-done", "bare", "script", "overhead");
    const Subject filter{"multiply-accumulate filter, 160 coefficients", "mac_fir", "text", fillFilter};
    measure({"bridge", "apb_slave_to_serial_master", "fileDict", fillBridge}, argv[1], folder);
    measure(filter, argv[1], folder);
    measureGrowth(filter);
}
