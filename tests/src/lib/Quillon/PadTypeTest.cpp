#include "PadTypeTest.h"

#include <Quillon/PadType.h>

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using Quillon::PadType;

void PadTypeTest::concretesAreDistinctAndHaveAVoltage() {
    const QRegularExpression voltage(QStringLiteral("^\\d\\.\\dV$"));
    QSet<QString> names;
    for (const PadType& padType : PadType::getConcretes()) {
        QVERIFY2(voltage.match(padType.getVoltage()).hasMatch(), qPrintable(padType.getName()));
        names << padType.getName();
    }
    QCOMPARE(static_cast<unsigned long>(names.size()), PadType::getConcretes().getCount());
    QVERIFY(names.contains(QStringLiteral("LVDS_2.5V")));
}

void PadTypeTest::voltageIsTheSecondPiece_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("voltage");
    QTest::newRow("two pieces") << "LVDS_2.5V"
                                << "2.5V";
    QTest::newRow("three pieces") << "SSTL_1.8V_II"
                                  << "1.8V";
    QTest::newRow("one piece") << "LVDS" << QString();
    QTest::newRow("no pad type") << QString() << QString();
}

void PadTypeTest::voltageIsTheSecondPiece() {
    QFETCH(QString, name);
    QTEST(PadType(name).getVoltage(), "voltage");
}
