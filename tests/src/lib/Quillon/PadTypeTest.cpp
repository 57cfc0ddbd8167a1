#include <support/TestMain.h>

#include <Quillon/PadType.h>

#include <QSet>
#include <QTest>

using Quillon::PadType;

class PadTypeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesTellTheVoltage();
};

void PadTypeTest::namesTellTheVoltage() {
    QSet<QString> names;
    for (const PadType& padType : PadType::getConcretes()) {
        QVERIFY2(padType.getVoltage().endsWith(QLatin1Char('V')), qPrintable(padType.getName()));
        names << padType.getName();
    }
    QCOMPARE(static_cast<unsigned long>(names.size()), PadType::getConcretes().getCount());
    QVERIFY(names.contains("LVDS_2.5V"));
    QCOMPARE(PadType("SSTL_1.8V_II").getVoltage(), "1.8V");
    QCOMPARE(PadType("LVDS").getVoltage(), QString());
}

VELMORA_TEST_MAIN(PadTypeTest)
#include "PadTypeTest.moc"
