#include <support/TestTable.h>

#include <Brindle/widgets/TableDelegate.h>
#include <Brindle/widgets/Theme.h>

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <memory>

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
    void init();
    void cleanup();
    void keysMoveAsInASpreadsheet_data();
    void keysMoveAsInASpreadsheet();
    void choiceIsKeptAtOnce();

private:
    QWidget* openEditor(int row, int column);

    std::unique_ptr<QTableView> _view;
    QStandardItemModel* _model = nullptr;
};

void TableDelegateTest::init() {
    _view = std::make_unique<QTableView>();
    _model = new QStandardItemModel(3, 3, _view.get());
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            _model->setItem(row, column, new QStandardItem("old"));
    }
    _view->setModel(_model);
    _view->setItemDelegate(new Delegate(_view.get()));
    Brindle::theme.enrich(_view.get());
    _view->resize(400, 200);
    _view->show();
    _view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(_view.get()));
}

void TableDelegateTest::cleanup() {
    _view.reset();
}

QWidget* TableDelegateTest::openEditor(int row, int column) {
    _view->setCurrentIndex(_model->index(row, column));
    QTest::keyClick(_view.get(), Qt::Key_F2);
    return QApplication::focusWidget();
}

void TableDelegateTest::keysMoveAsInASpreadsheet_data() {
    const TestTable<int, int, int, QString, QPoint> table("row", "key", "modifiers", "kept",
                                                          "next"); // next: column and row
    table.row("Return", 1, int(Qt::Key_Return), 0, "new", QPoint(0, 2));
    table.row("Enter", 1, int(Qt::Key_Enter), 0, "new", QPoint(0, 2));
    table.row("Shift+Return", 1, int(Qt::Key_Return), int(Qt::ShiftModifier), "new", QPoint(0, 0));
    table.row("Return in the last row", 2, int(Qt::Key_Return), 0, "new", QPoint(0, 2));
    table.row("Tab", 1, int(Qt::Key_Tab), 0, "new", QPoint(1, 1));
    table.row("Escape", 1, int(Qt::Key_Escape), 0, "old", QPoint(0, 1));
}

void TableDelegateTest::keysMoveAsInASpreadsheet() {
    QFETCH(int, row);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, kept);
    QFETCH(QPoint, next);
    auto* editor = qobject_cast<QLineEdit*>(openEditor(row, 0));
    QVERIFY(editor);
    QCOMPARE(editor->geometry(), _view->visualRect(_model->index(row, 0)));
    editor->selectAll();
    QTest::keyClicks(editor, "new");
    QTest::keyClick(editor, static_cast<Qt::Key>(key), static_cast<Qt::KeyboardModifiers>(modifiers));
    QCOMPARE(_model->item(row, 0)->text(), kept);
    QCOMPARE(_view->currentIndex(), _model->index(next.y(), next.x()));
}

void TableDelegateTest::choiceIsKeptAtOnce() {
    auto* comboBox = qobject_cast<QComboBox*>(openEditor(0, 1));
    QVERIFY(comboBox);
    comboBox->showPopup();
    QTest::keyClick(comboBox->view(), Qt::Key_Down);
    QTest::keyClick(comboBox->view(), Qt::Key_Return);
    QCOMPARE(comboBox->currentText(), "01N");
    QCOMPARE(_model->item(0, 1)->text(), "01N");
}

QTEST_MAIN(TableDelegateTest)
#include "TableDelegateTest.moc"
