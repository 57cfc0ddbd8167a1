#include <Quillon/TreeComboBox.h>
#include <support/TestMain.h>

#include <QAbstractItemView>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

class TreeComboBoxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void branchesAreOpen();
};

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
