#include <support/Patience.h>
#include <support/TestTable.h>

#include "DialogRobot.h"

#include <Brindle/widgets/FileDialog.h>

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

using Brindle::FileDialog;
using Steps = QList<DialogRobot::Step>;

Q_DECLARE_METATYPE(Steps)

namespace {

const QString caption = QStringLiteral("Choose");

DialogRobot::Step confirmProposal(const QString& expectedName) {
    return [expectedName](QWidget* dialog) {
        auto* nameEdit = dialog->findChild<QLineEdit*>("fileNameEdit");
        QCOMPARE(nameEdit->text(), expectedName);
        nameEdit->setFocus();
        QTest::keyClick(nameEdit, Qt::Key_Return);
    };
}

DialogRobot::Step selectRow(const QString& name) {
    return [name](QWidget* dialog) {
        auto* list = dialog->findChild<QTreeView*>("treeView");
        const auto findRow = [list, name] {
            return list->model()->match(list->model()->index(0, 0, list->rootIndex()), Qt::DisplayRole, name);
        };
        QTRY_COMPARE(findRow().size(), 1);
        list->setFocus();
        list->setCurrentIndex(findRow().constFirst());
    };
}

} // namespace

class FileDialogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void save_data();
    void save();
    void open_data();
    void open();
    void directory_data();
    void directory();

private:
    QTemporaryDir _folder;
};

void FileDialogTest::initTestCase() {
    QVERIFY(_folder.isValid());
    const QString working = _folder.filePath("working"); // has the same names in it, and is never meant
    for (const QString& folder : {_folder.path(), working})
        QVERIFY(QDir().mkpath(folder + "/sub"));
    for (const char* name : {"old.vhd", "plain", "sub/plain", "working/old.vhd", "working/sub/plain"})
        QVERIFY(QFile(_folder.filePath(QLatin1String(name))).open(QIODevice::WriteOnly));
    QVERIFY(QDir::setCurrent(working));
}

void FileDialogTest::save_data() {
    const TestTable<QString, Steps, QString> table("proposed", "steps",
                                                   "chosen"); // chosen: below the folder; empty when cancelled
    const auto enter = DialogRobot::enterName;
    const auto press = DialogRobot::press;
    const auto cancel = DialogRobot::cancel;
    table.row("proposal in a missing folder", "gone/deep/fir.vhd", Steps{confirmProposal("fir.vhd")}, "fir.vhd");
    table.row("no name proposed", ".vhd", Steps{confirmProposal(QString()), cancel()}, {});
    table.row("extension left out", "x.vhd", Steps{enter("fir")}, "fir.vhd");
    table.row("version number", "x.vhd", Steps{enter("fir_v1.2")}, "fir_v1.2.vhd");
    table.row("final point", "x.vhd", Steps{enter("fir.")}, "fir.vhd");
    table.row("enters a selected folder", "x.vhd", Steps{selectRow("sub"), press("Open"), confirmProposal("x.vhd")},
              "sub/x.vhd");
    table.row("name beside a selected folder", "x.vhd", Steps{selectRow("sub"), confirmProposal("x.vhd")}, "x.vhd");
    table.row("missing folder", "x.vhd", Steps{enter("gone/fir"), press("OK"), enter("fir")}, "fir.vhd");
    table.row("does not replace", "x.vhd", Steps{enter("old"), press("No"), enter("new")}, "new.vhd");
}

void FileDialogTest::save() {
    QFETCH(QString, proposed);
    QFETCH(Steps, steps);
    QFETCH(QString, chosen);
    const DialogRobot robot(steps);
    const QString path = FileDialog::getSaveFileName(nullptr, caption, _folder.filePath(proposed), "VHDL (*.vhd)");
    QCOMPARE(path, chosen.isEmpty() ? QString() : _folder.filePath(chosen));
    QVERIFY(robot.isDone());
}

void FileDialogTest::open_data() {
    const TestTable<QString, Steps, QString> table("proposed", "steps",
                                                   "chosen"); // chosen: below the folder; empty when cancelled
    const auto enter = DialogRobot::enterName;
    const auto press = DialogRobot::press;
    const auto cancel = DialogRobot::cancel;
    table.row("proposal that does not", "new.vhd", Steps{confirmProposal(QString()), cancel()}, {});
    table.row("proposal in a missing folder", "gone/deep/x.vhd", Steps{enter("old.vhd")}, "old.vhd");
    table.row("extension left out", "x.vhd", Steps{enter("old")}, "old.vhd");
    table.row("enters a selected folder", "old.vhd", Steps{selectRow("sub"), press("Open"), enter("../plain")},
              "plain");
    table.row("no such file", "x.vhd", Steps{enter("gone"), press("OK"), enter("old")}, "old.vhd");
}

void FileDialogTest::open() {
    QFETCH(QString, proposed);
    QFETCH(Steps, steps);
    QFETCH(QString, chosen);
    const DialogRobot robot(steps);
    const QString path =
        FileDialog::getOpenFileName(nullptr, caption, _folder.filePath(proposed), "VHDL (*.vhd);;All files (*)");
    QCOMPARE(path, chosen.isEmpty() ? QString() : _folder.filePath(chosen));
    QVERIFY(robot.isDone());
}

void FileDialogTest::directory_data() {
    const TestTable<QString, Steps, QString> table("proposed", "steps", "chosen");
    const auto enter = DialogRobot::enterName;
    const auto press = DialogRobot::press;
    const auto cancel = DialogRobot::cancel;
    table.row("proposal that does not exist", "bridge", Steps{confirmProposal("bridge")}, "bridge");
    table.row("proposal with missing parents", "a/b/c", Steps{confirmProposal("a/b/c")}, "a/b/c");
    table.row("new name", "bridge", Steps{enter("other")}, "other");
    table.row("nothing typed", "bridge", Steps{enter(QString())}, "");
    table.row("file", "bridge", Steps{enter("plain"), press("OK"), enter("other")}, "other");
    table.row("below a file", "bridge", Steps{enter("plain/x"), press("OK"), cancel()}, {});
}

void FileDialogTest::directory() {
    QFETCH(QString, proposed);
    QFETCH(Steps, steps);
    QFETCH(QString, chosen);
    const DialogRobot robot(steps);
    const QString path = FileDialog::getDirectory(nullptr, caption, _folder.filePath(proposed));
    QCOMPARE(path, chosen.isNull() ? QString() : QDir::cleanPath(_folder.filePath(chosen)));
    QVERIFY(robot.isDone());
    QVERIFY2(path.isEmpty() || path.endsWith("sub") || !QFile::exists(_folder.filePath("bridge")), "creates nothing");
}

QTEST_MAIN(FileDialogTest)
#include "FileDialogTest.moc"
