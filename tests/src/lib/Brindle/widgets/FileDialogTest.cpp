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

enum Kind { Save, Open, Directory };

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
    void choices_data();
    void choices();

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

void FileDialogTest::choices_data() {
    // The name chosen is that below the folder, null when cancelled.
    const TestTable<int, QString, Steps, QString> table("kind", "proposed", "steps", "chosen");
    const auto enter = DialogRobot::enterName;
    const auto press = DialogRobot::press;
    const auto cancel = DialogRobot::cancel;
    const auto save = [&](const char* tag, const char* proposed, const Steps& steps, const QString& chosen) {
        table.row(tag, Save, proposed, steps, chosen);
    };
    save("proposal in a missing folder", "gone/deep/fir.vhd", {confirmProposal("fir.vhd")}, "fir.vhd");
    save("no name proposed", ".vhd", {confirmProposal(QString()), cancel()}, {});
    save("extension left out", "x.vhd", {enter("fir")}, "fir.vhd");
    save("version number", "x.vhd", {enter("fir_v1.2")}, "fir_v1.2.vhd");
    save("final point", "x.vhd", {enter("fir.")}, "fir.vhd");
    save("enters a selected folder", "x.vhd", {selectRow("sub"), press("Open"), confirmProposal("x.vhd")}, "sub/x.vhd");
    save("name beside a selected folder", "x.vhd", {selectRow("sub"), confirmProposal("x.vhd")}, "x.vhd");
    save("missing folder", "x.vhd", {enter("gone/fir"), press("OK"), enter("fir")}, "fir.vhd");
    save("does not replace", "x.vhd", {enter("old"), press("No"), enter("new")}, "new.vhd");
    const auto open = [&](const char* tag, const char* proposed, const Steps& steps, const QString& chosen) {
        table.row(qPrintable(QString("open: ") + tag), Open, proposed, steps, chosen);
    };
    open("proposal that does not exist", "new.vhd", {confirmProposal(QString()), cancel()}, {});
    open("proposal in a missing folder", "gone/deep/x.vhd", {enter("old.vhd")}, "old.vhd");
    open("extension left out", "x.vhd", {enter("old")}, "old.vhd");
    open("enters a selected folder", "old.vhd", {selectRow("sub"), press("Open"), enter("../plain")}, "plain");
    open("no such file", "x.vhd", {enter("gone"), press("OK"), enter("old")}, "old.vhd");
    const auto directory = [&](const char* tag, const char* proposed, const Steps& steps, const QString& chosen) {
        table.row(qPrintable(QString("directory: ") + tag), Directory, proposed, steps, chosen);
    };
    directory("proposal with missing parents", "a/b/c", {confirmProposal("a/b/c")}, "a/b/c");
    directory("new name", "bridge", {enter("other")}, "other");
    directory("nothing typed", "bridge", {enter(QString())}, "");
    directory("file", "bridge", {enter("plain"), press("OK"), enter("other")}, "other");
    directory("below a file", "bridge", {enter("plain/x"), press("OK"), cancel()}, {});
}

void FileDialogTest::choices() {
    QFETCH(int, kind);
    QFETCH(QString, proposed);
    QFETCH(Steps, steps);
    QFETCH(QString, chosen);
    const DialogRobot robot(steps);
    const auto start = _folder.filePath(proposed);
    const QString path = kind == Save ? FileDialog::getSaveFileName(nullptr, caption, start, "VHDL (*.vhd)")
                         : kind == Open
                             ? FileDialog::getOpenFileName(nullptr, caption, start, "VHDL (*.vhd);;All files (*)")
                             : FileDialog::getDirectory(nullptr, caption, start);
    QCOMPARE(path, chosen.isNull() ? QString() : QDir::cleanPath(_folder.filePath(chosen)));
    QVERIFY(robot.isDone());
    QVERIFY2(!QFile::exists(_folder.filePath("a")) && !QFile::exists(_folder.filePath("other")), "creates nothing");
}

QTEST_MAIN(FileDialogTest)
#include "FileDialogTest.moc"
