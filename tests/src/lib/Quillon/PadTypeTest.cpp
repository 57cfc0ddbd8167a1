#include <support/TestMain.h>
#include <support/TestTable.h>

#include <Quillon/PadType.h>

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using Quillon::PadType;

class PadTypeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void concretesAreDistinctAndHaveAVoltage();
    void voltageIsTheSecondPiece_data();
    void voltageIsTheSecondPiece();
};

void PadTypeTest::concretesAreDistinctAndHaveAVoltage() {
    const QRegularExpression voltage("^\\d\\.\\dV$");
    QSet<QString> names;
    for (const PadType& padType : PadType::getConcretes()) {
        QVERIFY2(voltage.match(padType.getVoltage()).hasMatch(), qPrintable(padType.getName()));
        names << padType.getName();
    }
    QCOMPARE(static_cast<unsigned long>(names.size()), PadType::getConcretes().getCount());
    QVERIFY(names.contains("LVDS_2.5V"));
}

void PadTypeTest::voltageIsTheSecondPiece_data() {
    const TestTable<QString, QString> table("name", "voltage");
    table.row("two pieces", "LVDS_2.5V", "2.5V");
    table.row("three pieces", "SSTL_1.8V_II", "1.8V");
    table.row("one piece", "LVDS", {});
    table.row("no pad type", {}, {});
}

void PadTypeTest::voltageIsTheSecondPiece() {
    QFETCH(QString, name);
    QTEST(PadType(name).getVoltage(), "voltage");
}

VELMORA_TEST_MAIN(PadTypeTest)
#include "PadTypeTest.moc"
