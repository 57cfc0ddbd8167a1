#include <support/TestTable.h>

#include "DialogRobot.h"

#include <Brindle/widgets/FileDialog.h>

#include <QAbstractItemDelegate>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QStyleOptionViewItem>
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
    void columnsShowWhole();
    void directory_data();
    void directory();
    void functionsReplaceDialogs();

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
    table.row("proposal", "fir.vhd", Steps{confirmProposal("fir.vhd")}, "fir.vhd");
    table.row("proposal in a missing folder", "gone/deep/fir.vhd", Steps{confirmProposal("fir.vhd")}, "fir.vhd");
    table.row("no name proposed", ".vhd", Steps{confirmProposal(QString()), cancel()}, {});
    table.row("extension left out", "x.vhd", Steps{enter("fir")}, "fir.vhd");
    table.row("extension given", "x.vhd", Steps{enter("fir.vhd")}, "fir.vhd");
    table.row("other extension", "x.vhd", Steps{enter("fir.txt")}, "fir.txt");
    table.row("version number", "x.vhd", Steps{enter("fir_v1.2")}, "fir_v1.2.vhd");
    table.row("final point", "x.vhd", Steps{enter("fir.")}, "fir.vhd");
    table.row("in a folder", "x.vhd", Steps{enter("sub/fir")}, "sub/fir.vhd");
    table.row("enters a folder", "x.vhd", Steps{enter("sub"), enter("fir")}, "sub/fir.vhd");
    table.row("enters a selected folder", "x.vhd", Steps{selectRow("sub"), press("Open"), confirmProposal("x.vhd")},
              "sub/x.vhd");
    table.row("name beside a selected folder", "x.vhd", Steps{selectRow("sub"), confirmProposal("x.vhd")}, "x.vhd");
    table.row("missing folder", "x.vhd", Steps{enter("gone/fir"), press("OK"), enter("fir")}, "fir.vhd");
    table.row("replaces", "x.vhd", Steps{enter("old.vhd"), press("Yes")}, "old.vhd");
    table.row("replaces the completed name", "x.vhd", Steps{enter("old"), press("Yes")}, "old.vhd");
    table.row("does not replace", "x.vhd", Steps{enter("old"), press("No"), enter("new")}, "new.vhd");
    table.row("cancelled", "x.vhd", Steps{cancel()}, {});
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
    table.row("proposal that exists", "old.vhd", Steps{confirmProposal("old.vhd")}, "old.vhd");
    table.row("proposal that does not", "new.vhd", Steps{confirmProposal(QString()), cancel()}, {});
    table.row("proposal in a missing folder", "gone/deep/x.vhd", Steps{enter("old.vhd")}, "old.vhd");
    table.row("extension left out", "x.vhd", Steps{enter("old")}, "old.vhd");
    table.row("file without extension", "x.vhd", Steps{enter("plain")}, "plain");
    table.row("in a folder", "x.vhd", Steps{enter("sub/plain")}, "sub/plain");
    table.row("enters a folder", "x.vhd", Steps{enter("sub"), enter("../old.vhd")}, "old.vhd");
    table.row("enters a selected folder", "old.vhd", Steps{selectRow("sub"), press("Open"), enter("../plain")},
              "plain");
    table.row("selected file", "x.vhd", Steps{selectRow("old.vhd"), press("Open")}, "old.vhd");
    table.row("no such file", "x.vhd", Steps{enter("gone"), press("OK"), enter("old")}, "old.vhd");
    table.row("cancelled", "old.vhd", Steps{cancel()}, {});
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

/// Size, type and date of what is listed.
void FileDialogTest::columnsShowWhole() {
    const QTemporaryDir folder;
    QFile file(folder.filePath("filter.velmora"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(480, 'x'));
    file.close();
    const DialogRobot robot({[](QWidget* dialog) {
        const auto* list = dialog->findChild<QTreeView*>("treeView");
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 1);
        for (int column = 1; column < list->model()->columnCount(); ++column) {
            const QSize wanted = list->itemDelegate()->sizeHint(QStyleOptionViewItem(),
                                                                list->model()->index(0, column, list->rootIndex()));
            QTRY_VERIFY(list->columnWidth(column) >= wanted.width());
        }
        DialogRobot::cancel()(dialog);
    }});
    FileDialog::getOpenFileName(nullptr, caption, folder.filePath("x"), "All files (*)");
    QVERIFY(robot.isDone());
}

void FileDialogTest::directory_data() {
    const TestTable<QString, Steps, QString> table("proposed", "steps", "chosen");
    const auto enter = DialogRobot::enterName;
    const auto press = DialogRobot::press;
    const auto cancel = DialogRobot::cancel;
    table.row("proposal that does not exist", "bridge", Steps{confirmProposal("bridge")}, "bridge");
    table.row("proposal by the button", "bridge", Steps{press("Choose")}, "bridge");
    table.row("proposal with missing parents", "a/b/c", Steps{confirmProposal("a/b/c")}, "a/b/c");
    table.row("proposal that exists", "sub", Steps{confirmProposal("sub")}, "sub");
    table.row("new name", "bridge", Steps{enter("other")}, "other");
    table.row("existing name", "bridge", Steps{enter("sub")}, "sub");
    table.row("nothing typed", "bridge", Steps{enter(QString())}, "");
    table.row("file", "bridge", Steps{enter("plain"), press("OK"), enter("other")}, "other");
    table.row("below a file", "bridge", Steps{enter("plain/x"), press("OK"), cancel()}, {});
    table.row("cancelled", "bridge", Steps{cancel()}, {});
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

void FileDialogTest::functionsReplaceDialogs() {
    QStringList asked;
    FileDialog::setSaveFileNameFunction(
        [&](QWidget*, const QString& title, const QString& path, const QString& filter) {
            asked = QStringList{title, path, filter};
            return QStringLiteral("/answer.vhd");
        });
    FileDialog::setOpenFileNameFunction(
        [&](QWidget*, const QString& title, const QString& path, const QString& filter) {
            asked = QStringList{title, path, filter};
            return QStringLiteral("/read.vhd");
        });
    FileDialog::setDirectoryFunction([&](QWidget*, const QString& title, const QString& path) {
        asked = QStringList{title, path};
        return QStringLiteral("/answer");
    });
    QCOMPARE(FileDialog::getSaveFileName(nullptr, "a", "b", "c"), "/answer.vhd");
    QCOMPARE(asked, QStringList({"a", "b", "c"}));
    QCOMPARE(FileDialog::getOpenFileName(nullptr, "f", "g", "h"), "/read.vhd");
    QCOMPARE(asked, QStringList({"f", "g", "h"}));
    QCOMPARE(FileDialog::getDirectory(nullptr, "d", "e"), "/answer");
    QCOMPARE(asked, QStringList({"d", "e"}));

    FileDialog::setSaveFileNameFunction(nullptr);
    FileDialog::setOpenFileNameFunction(nullptr);
    FileDialog::setDirectoryFunction(nullptr);
    const DialogRobot robot({DialogRobot::cancel(), DialogRobot::cancel(), DialogRobot::cancel()});
    QCOMPARE(FileDialog::getSaveFileName(nullptr, "a", "b", "c"), QString());
    QCOMPARE(FileDialog::getOpenFileName(nullptr, "f", "g", "h"), QString());
    QCOMPARE(FileDialog::getDirectory(nullptr, "d", "e"), QString());
    QVERIFY(robot.isDone());
}

QTEST_MAIN(FileDialogTest)
#include "FileDialogTest.moc"
