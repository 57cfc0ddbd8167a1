#include <support/ConsoleRecorder.h>
#include <support/PathDialogs.h>
#include <support/ReadFile.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/widgets/FileTarget.h>
#include <velmora/workbench/Workbench.h>

#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTextEdit>
#include <QTimer>

#include <cmath>
#include <functional>
#include <memory>
#include <utility>

namespace {

const QString typedList = QStringLiteral("1, 2;3");

QString generateProgram() {
    return QCoreApplication::applicationDirPath() + "/velmora-generate";
}

/// Runs the work once a dialog is open, and ends the dialog.
void whenDialogOpens(const std::function<void(QDialog&)>& work) {
    QTimer::singleShot(0, qApp, [work] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog) {
            work(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        }
    });
}

bool isOkEnabled(QDialog& dialog) {
    for (const auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->isDefault())
            return button->isEnabled();
    }
    return false;
}

} // namespace

/// What fills the list of coefficients, and what is plotted of it.
class CoefficientsTest : public QObject {
    Q_OBJECT

private:
    void open(const QString& ip);
    QTextEdit* editor() const { return _leaf->findChild<QTextEdit*>("Coefficients"); }
    void click(const char* name) const { _leaf->findChild<QPushButton*>(name)->click(); }
    QStringList saveNumbers() const;
    template <class Widget>
    Widget* find(const char* name) const {
        return _leaf->findChild<Widget*>(name);
    }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<Velmora::Workbench> _workbench;
    std::unique_ptr<Velmora::IPLeaf> _leaf;

private Q_SLOTS:
    void importIsOneStep_data();
    void importIsOneStep();
    void refusalChangesNothing_data();
    void refusalChangesNothing();
    void designs_data();
    void designs();
    void response();
    void views_data();
    void views();
    void responseWithoutModule();
};

void CoefficientsTest::open(const QString& ip) {
    _leaf.reset();
    _prefix = std::make_unique<TestPrefix>();
    _leaf = std::make_unique<Velmora::IPLeaf>(_prefix->addKnownIP(ip, "").toStdString());
    _workbench = std::make_unique<Velmora::Workbench>(nullptr, generateProgram());
    _workbench->show(_leaf.get());
    _leaf->resize(1000, 800);
    _leaf->show();
    QVERIFY(QTest::qWaitForWindowExposed(_leaf.get()));
    editor()->setPlainText(typedList);
    find<QSpinBox>("CoefficientWidth")->setValue(12);
}

/// What the Response tab saves, without its head.
QStringList CoefficientsTest::saveNumbers() const {
    PathDialogs dialogs;
    dialogs.answer = _prefix->path("response.csv");
    find<QTabBar>("pageTabs")->setCurrentIndex(2);
    click("saveResponseNumbers");
    return QString::fromUtf8(readFile(dialogs.answer)).trimmed().split('\n').mid(1);
}

void CoefficientsTest::importIsOneStep_data() {
    const TestTable<QByteArray, QString, QString, QString> table("content", "scale", "list", "firstSample");
    table.row("scaled", "0.25\n-0.5\n0.25\n", "Largest power of two", "1024, -2048, 1024", "0,1024,1024");
    table.row("as they are", "3\n-4\n", "As they are", "3, -4", "0,3,3");
    table.row("rounded", "0.3\n1\n", "Full range", "614, 2047", "0,614,614.2");
}

void CoefficientsTest::importIsOneStep() {
    QFETCH(QByteArray, content);
    QFETCH(QString, scale);
    QFETCH(QString, list);
    QFETCH(QString, firstSample);
    open("Systolic");
    const QString file = _prefix->write("taps.csv", content);
    QVERIFY(!Velmora::FileTarget::find(editor()->viewport(), {"a.velmora"}));
    QString usual;
    whenDialogOpens([&](QDialog& dialog) {
        auto* combo = dialog.findChild<QComboBox*>("importScale");
        usual = combo->currentText();
        combo->setCurrentText(scale);
        dialog.accept();
    });
    Q_EMIT Velmora::FileTarget::find(editor()->viewport(), {file})->dropped(file);
    QCOMPARE(editor()->toPlainText(), list);
    QCOMPARE(usual, content.contains('.') ? "Full range" : "As they are");
    find<QTabBar>("pageTabs")->setCurrentIndex(2);
    find<QComboBox>("responseView")->setCurrentText("Impulse response");
    const QString sample = saveNumbers().value(0); // rounded and not
    QVERIFY2(sample.startsWith(firstSample), qPrintable(sample));
    editor()->setFocus();
    QTest::keyClick(editor(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(editor()->toPlainText(), typedList);
    _leaf->getForm()->getHistory().undo(); // has nothing left to take back
    QCOMPARE(editor()->toPlainText(), typedList);
}

void CoefficientsTest::refusalChangesNothing_data() {
    const TestTable<QByteArray, QString> table("content", "told");
    table.row("no number", "1\n2\nthree\n", "3");
    table.row("empty", "", "");
}

void CoefficientsTest::refusalChangesNothing() {
    QFETCH(QByteArray, content);
    QFETCH(QString, told);
    open("Systolic");
    PathDialogs dialogs;
    dialogs.answer = _prefix->write("taps.csv", content);
    const ConsoleRecorder recorder;
    click("importCoefficients");
    const QString shown = recorder.errors().join(" ");
    QVERIFY2(shown.contains("taps.csv") && shown.contains(told), qPrintable(shown));
    QCOMPARE(editor()->toPlainText(), typedList);
    QVERIFY(!_leaf->getForm()->getHistory().canUndo());
}

void CoefficientsTest::designs_data() {
    const TestTable<QString, QStringList, QStringList> table("ip", "wishes", "options");
    table.row("an even number", "Transpose symmetric", {"attenuation=45"}, {"--even"});
    table.row("a long one", "Mac fir", {"attenuation=40", "stop=0.12"}, {"--most=160"});
    table.row("in Hz", "Systolic", {"attenuation=40", "rate=48000", "pass=4800", "stop=7200"}, {});
}

void CoefficientsTest::designs() {
    QFETCH(QString, ip);
    QFETCH(QStringList, wishes);
    QFETCH(QStringList, options);
    open(ip);
    bool isRefused = false;
    QString reached;
    const auto wish = [](QDialog& dialog, const QString& text) {
        dialog.findChild<QLineEdit*>(text.section('=', 0, 0))->setText(text.section('=', 1));
    };
    whenDialogOpens([&](QDialog& dialog) {
        const auto* figures = dialog.findChild<QLabel*>("designFigures");
        dialog.accept(); // Enter, before there is a result
        wish(dialog, "attenuation=150");
        isRefused = QTest::qWaitFor([&] { return figures->text().contains("No filter was found"); }, 20000) &&
                    !isOkEnabled(dialog) && dialog.isVisible();
        for (const QString& text : wishes)
            wish(dialog, text);
        if (QTest::qWaitFor([&] { return isOkEnabled(dialog); }, 20000))
            reached = figures->text().section("Ripple ", 1);
        dialog.accept();
    });
    click("designCoefficients");
    QVERIFY(isRefused && !reached.isEmpty());
    QStringList arguments{"coefficients", "design",      "lowpass",     "--width=12",
                          "--pass=0.1",   "--stop=0.15", "--ripple=0.2"};
    for (const QString& text : wishes)
        arguments += "--" + text;
    QProcess program;
    program.start(generateProgram(), arguments + options);
    QVERIFY(program.waitForFinished());
    QCOMPARE(editor()->toPlainText(), QString::fromUtf8(program.readAllStandardOutput()).trimmed());
    find<QTabBar>("pageTabs")->setCurrentIndex(2);
    QVERIFY(find<QLabel>("responseFigures")->text().endsWith(", ripple " + reached)); // in the bands of the wish
    QString remembered;
    whenDialogOpens([&](QDialog& dialog) { remembered = dialog.findChild<QLineEdit*>("attenuation")->text(); });
    click("designCoefficients");
    QCOMPARE(remembered, wishes.constFirst().section('=', 1));
}

void CoefficientsTest::response() {
    open("Systolic");
    editor()->setPlainText("x\"fff\", 2047, 5, -7, 4095"); // the first and the last are -1
    find<QTabBar>("pageTabs")->setCurrentIndex(2);
    const bool isModuleThere =
        QFile::exists(QCoreApplication::applicationDirPath() + "/../lib/velmora/velmora_plot.so");
    QCOMPARE(find<QLabel>("missingPlot") == nullptr, isModuleThere);
    QVERIFY(find<QLabel>("responseFigures")->text().contains("5 taps"));
    const QStringList rows = saveNumbers();
    QVERIFY(rows.size() > 1000);
    if (isModuleThere) { // else velmora-generate is not there either
        QProcess program;
        program.start(generateProgram(), {"coefficients", "response", "--list", "x\"fff\", 2047, 5, -7, 4095",
                                          "--width", "12", "--points", QString::number(rows.size()), "--json"});
        QVERIFY(program.waitForFinished());
        const QJsonArray magnitude = QJsonDocument::fromJson(program.readAllStandardOutput())["magnitude"].toArray();
        QCOMPARE(magnitude.size(), rows.size());
        for (int row = 0; row < rows.size(); ++row)
            QVERIFY(std::abs(rows.at(row).section(',', 1).toDouble() - magnitude[row].toDouble()) < 1e-9);
        PathDialogs dialogs;
        for (const auto& [name, content] : {std::pair("plot.SVG", "<svg"), std::pair("plot.png", "PNG")}) {
            dialogs.answer = _prefix->path(name);
            click("saveResponseImage");
            QVERIFY(readFile(dialogs.answer).contains(content));
        }
        dialogs.answer = "/dev/null/plot.png";
        click("saveResponseImage");
        QVERIFY(find<QLabel>("responseFigures")->text().contains("Unable to write file"));
    }
    editor()->clear();
    QVERIFY(find<QLabel>("responseFigures")->text().contains("no coefficients"));
    editor()->setPlainText("1, 2, 1");
    find<QComboBox>("CoefficientMode")->setCurrentText("Input");
    QVERIFY(find<QLabel>("responseFigures")->text().contains("inputs of the filter"));
    QVERIFY(!find<QPushButton>("designCoefficients")->isEnabled());
}

void CoefficientsTest::views_data() {
    const TestTable<QString, double, QString, double> table("view", "rate", "last", "tolerance");
    // of a delay by five samples: the end of the frequencies, in Hz where the rate is given, and the value there
    table.row("phase", "Phase", 0, "0.5,-15.70796", 1e-4);
    table.row("delay", "Group delay", 48000, "24000,5", 1e-9);
    table.row("step", "Step response", 48000, "5,1", 0);
}

void CoefficientsTest::views() {
    QFETCH(QString, view);
    QFETCH(double, rate);
    QFETCH(QString, last);
    QFETCH(double, tolerance);
    open("Systolic");
    editor()->setPlainText("0, 0, 0, 0, 0, 1");
    find<QTabBar>("pageTabs")->setCurrentIndex(2);
    find<QComboBox>("responseView")->setCurrentText(view);
    find<QDoubleSpinBox>("responseRate")->setValue(rate);
    const QString row = saveNumbers().constLast();
    for (int column : {0, 1}) {
        const double difference =
            row.section(',', column, column).toDouble() - last.section(',', column, column).toDouble();
        QVERIFY2(std::abs(difference) <= tolerance, qPrintable(row));
    }
}

void CoefficientsTest::responseWithoutModule() {
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("bin"));
    const QString copy = folder.filePath("bin/test");
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));
    QProcess test;
    test.setProcessChannelMode(QProcess::MergedChannels);
    test.start(copy, {"response"});
    QVERIFY(test.waitForFinished());
    QVERIFY2(test.exitStatus() == QProcess::NormalExit && test.exitCode() == 0, test.readAll().constData());
}

VELMORA_TEST_MAIN(CoefficientsTest)
#include "tst_coefficients.moc"
