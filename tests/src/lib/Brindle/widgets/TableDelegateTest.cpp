#include <Brindle/widgets/TableDelegate.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

namespace {

/// Line edits, but a combo box in column 1.
class Delegate : public Brindle::TableDelegate {
public:
    using TableDelegate::TableDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const override {
        if (index.column() != 1)
            return new QLineEdit(parent);
        auto* comboBox = new QComboBox(parent);
        comboBox->addItems({"01P", "01N"});
        return comboBox;
    }
};

} // namespace

class TableDelegateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysMoveAsInASpreadsheet();
    void choiceIsKeptAtOnce();

private:
    QWidget* openEditor(QTableView& view, int row, int column) {
        view.setModel(&_model);
        view.setItemDelegate(new Delegate(&view));
        view.resize(400, 200);
        view.show();
        view.activateWindow();
        if (!QTest::qWaitForWindowActive(&view))
            return nullptr;
        view.setCurrentIndex(_model.index(row, column));
        QTest::keyClick(&view, Qt::Key_F2);
        return QApplication::focusWidget();
    }

    QStandardItemModel _model{3, 3};
};

void TableDelegateTest::keysMoveAsInASpreadsheet() {
    const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTableView view;
        _model.setData(_model.index(1, 0), "old");
        auto* editor = qobject_cast<QLineEdit*>(openEditor(view, 1, 0));
        if (!editor || editor->geometry() != view.visualRect(_model.index(1, 0)))
            return QStringLiteral("no editor in the cell");
        editor->setText("new");
        QTest::keyClick(editor, key, modifiers);
        return _model.index(1, 0).data().toString() + QString::number(view.currentIndex().row());
    };
    QCOMPARE(press(Qt::Key_Return, Qt::NoModifier), "new2");
    QCOMPARE(press(Qt::Key_Return, Qt::ShiftModifier), "new0");
    QCOMPARE(press(Qt::Key_Escape, Qt::NoModifier), "old1");
}

void TableDelegateTest::choiceIsKeptAtOnce() {
    QTableView view;
    auto* comboBox = qobject_cast<QComboBox*>(openEditor(view, 0, 1));
    QVERIFY(comboBox);
    comboBox->showPopup();
    QTest::keyClick(comboBox->view(), Qt::Key_Down);
    QTest::keyClick(comboBox->view(), Qt::Key_Return);
    QCOMPARE(comboBox->currentText(), "01N");
    QCOMPARE(_model.index(0, 1).data().toString(), "01N");
}

QTEST_MAIN(TableDelegateTest)
#include "TableDelegateTest.moc"
