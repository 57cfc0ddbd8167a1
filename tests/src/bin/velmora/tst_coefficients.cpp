#include <support/ConsoleRecorder.h>
#include <support/PathDialogs.h>
#include <support/ReadFile.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/workbench/Workbench.h>

#include <QComboBox>
#include <QDialog>
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
    template <class Widget>
    Widget* find(const char* name) const {
        return _leaf->findChild<Widget*>(name);
    }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<Velmora::Workbench> _workbench;
    std::unique_ptr<Velmora::IPLeaf> _leaf;

private Q_SLOTS:
    void importIsOneStep();
    void refusalChangesNothing_data();
    void refusalChangesNothing();
    void designs();
    void response();
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

void CoefficientsTest::importIsOneStep() {
    open("Systolic");
    PathDialogs dialogs;
    dialogs.answer = _prefix->write("taps.csv", "0.25\n-0.5\n0.25\n");
    whenDialogOpens([](QDialog& dialog) {
        dialog.findChild<QComboBox*>("importScale")->setCurrentIndex(1); // power of two
        dialog.accept();
    });
    click("importCoefficients");
    QCOMPARE(editor()->toPlainText(), QString("1024, -2048, 1024"));
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

void CoefficientsTest::designs() {
    open("Transpose symmetric");
    QString refusal;
    bool isRefused = false;
    bool isFound = false;
    whenDialogOpens([&](QDialog& dialog) {
        const auto* figures = dialog.findChild<QLabel*>("designFigures");
        dialog.findChild<QLineEdit*>("attenuation")->setText("150");
        isRefused = QTest::qWaitFor([&] { return figures->text().contains("No filter was found"); }, 20000) &&
                    !isOkEnabled(dialog);
        refusal = figures->text();
        dialog.findChild<QLineEdit*>("attenuation")->setText("40");
        isFound = QTest::qWaitFor([&] { return isOkEnabled(dialog); }, 20000);
        dialog.accept();
    });
    click("designCoefficients");
    QVERIFY2(isRefused, qPrintable(refusal));
    QVERIFY(isFound);
    QProcess program;
    program.start(generateProgram(), {"coefficients", "design", "lowpass", "--pass", "0.1", "--stop", "0.15",
                                      "--ripple", "0.2", "--attenuation", "40", "--width", "12", "--even"});
    QVERIFY(program.waitForFinished());
    QCOMPARE(editor()->toPlainText(), QString::fromUtf8(program.readAllStandardOutput()).trimmed());
    bool isRemembered = false;
    whenDialogOpens(
        [&](QDialog& dialog) { isRemembered = dialog.findChild<QLineEdit*>("attenuation")->text() == "40"; });
    click("designCoefficients");
    QVERIFY(isRemembered);
}

void CoefficientsTest::response() {
    open("Systolic");
    editor()->setPlainText("x\"fff\", 2047, 5, -7, 4095"); // the first and the last are -1
    find<QTabBar>("pageTabs")->setCurrentIndex(2);
    const bool isModuleThere =
        QFile::exists(QCoreApplication::applicationDirPath() + "/../lib/velmora/velmora_plot.so");
    QCOMPARE(find<QLabel>("missingPlot") == nullptr, isModuleThere);
    QVERIFY(find<QLabel>("responseFigures")->text().contains("5 taps"));
    PathDialogs dialogs;
    dialogs.answer = _prefix->path("response.csv");
    click("saveResponseNumbers");
    const QStringList rows = QString::fromUtf8(readFile(dialogs.answer)).trimmed().split('\n').mid(1);
    if (isModuleThere) { // else velmora-generate is not there either
        QProcess program;
        program.start(generateProgram(), {"coefficients", "response", "--list", "x\"fff\", 2047, 5, -7, 4095",
                                          "--width", "12", "--points", QString::number(rows.size()), "--json"});
        QVERIFY(program.waitForFinished());
        const QJsonArray magnitude = QJsonDocument::fromJson(program.readAllStandardOutput())["magnitude"].toArray();
        QCOMPARE(magnitude.size(), rows.size());
        for (int row = 0; row < rows.size(); ++row)
            QVERIFY(std::abs(rows.at(row).section(',', 1).toDouble() - magnitude[row].toDouble()) < 1e-9);
    }
    editor()->clear();
    QVERIFY(find<QLabel>("responseFigures")->text().contains("no coefficients"));
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
