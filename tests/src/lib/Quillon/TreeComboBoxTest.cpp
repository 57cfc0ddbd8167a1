#include <Quillon/TreeComboBox.h>
#include <support/TestMain.h>

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

class TreeComboBoxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void clickInThePopupChooses();
    void branchesAreOpen();
};

void TreeComboBoxTest::clickInThePopupChooses() {
    Quillon::TreeComboBox comboBox;
    comboBox.addItems({"50%", "60%", "70%"});
    const QSignalSpy changes(&comboBox, SIGNAL(currentIndexChanged(QString)));
    comboBox.show();
    comboBox.showPopup();
    QVERIFY(QTest::qWaitForWindowExposed(comboBox.view()->window()));
    QTest::qWait(QApplication::doubleClickInterval()); // the popup takes an earlier click for the one that opened it
    const QPoint place = comboBox.view()->visualRect(comboBox.model()->index(2, 0)).center();
    QTest::mouseMove(comboBox.view()->viewport(), place);
    QTest::mouseClick(comboBox.view()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(comboBox.currentText(), "70%");
    QCOMPARE(changes.size(), 1);
    QVERIFY(!comboBox.view()->isVisible());
}

void TreeComboBoxTest::branchesAreOpen() {
    Quillon::TreeComboBox comboBox;
    QStandardItemModel model;
    auto* family = new QStandardItem("LVDS");
    family->appendRow(new QStandardItem("LVDS_2.5V"));
    model.appendRow(family);
    comboBox.setModel(&model);
    comboBox.show();
    comboBox.showPopup();
    QVERIFY(QTest::qWaitForWindowExposed(comboBox.view()->window()));
    QVERIFY(comboBox.view()->visualRect(family->child(0)->index()).isValid());
}

VELMORA_TEST_MAIN(TreeComboBoxTest)
#include "TreeComboBoxTest.moc"
