#include "TreeComboBoxTest.h"

#include <Quillon/TreeComboBox.h>

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeView>

void TreeComboBoxTest::clickInThePopupChooses() {
    Quillon::TreeComboBox comboBox;
    comboBox.addItems({QStringLiteral("50%"), QStringLiteral("60%"), QStringLiteral("70%")});
    const QSignalSpy changes(&comboBox, SIGNAL(currentIndexChanged(QString)));
    comboBox.show();
    comboBox.showPopup();
    QVERIFY(QTest::qWaitForWindowExposed(comboBox.view()->window()));
    QTest::qWait(QApplication::doubleClickInterval()); // the popup takes an earlier click for the one that opened it
    const QPoint place = comboBox.view()->visualRect(comboBox.model()->index(2, 0)).center();
    QTest::mouseMove(comboBox.view()->viewport(), place);
    QTest::mouseClick(comboBox.view()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(comboBox.currentText(), QStringLiteral("70%"));
    QCOMPARE(changes.size(), 1);
    QVERIFY(!comboBox.view()->isVisible());
}

void TreeComboBoxTest::branchesAreOpen() {
    Quillon::TreeComboBox comboBox;
    QStandardItemModel model;
    auto* family = new QStandardItem(QStringLiteral("LVDS"));
    family->appendRow(new QStandardItem(QStringLiteral("LVDS_2.5V")));
    model.appendRow(family);
    comboBox.setModel(&model);
    comboBox.show();
    comboBox.showPopup();
    QVERIFY(QTest::qWaitForWindowExposed(comboBox.view()->window()));
    QVERIFY(comboBox.view()->visualRect(family->child(0)->index()).isValid());
}
