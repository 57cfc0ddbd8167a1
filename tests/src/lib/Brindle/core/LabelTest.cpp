#include "ForeignLocale.h"

#include <Brindle/core/Label.h>

#include <QtTest>

#include <limits>

using namespace Brindle;

class LabelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbers();
};

void LabelTest::numbers() {
    const ForeignLocale foreign;
    QCOMPARE(getLabel(0.5), std::string("0.5"));
    QCOMPARE(getLabel(20.0), std::string("20.0"));
    QCOMPARE(getLabel(-0.0), std::string("-0.0"));
    QCOMPARE(getLabel(0.1), std::string("0.1")); // the shortest that reads back
    QCOMPARE(getLabel(1e6), std::string("1000000.0"));
    QCOMPARE(getLabel(std::numeric_limits<double>::denorm_min()), "0." + std::string(323, '0') + "5");
    QCOMPARE(getLabel(std::numeric_limits<double>::infinity()), std::string("inf"));
    QCOMPARE(getLabel(std::numeric_limits<double>::quiet_NaN()), std::string("nan"));
}

QTEST_GUILESS_MAIN(LabelTest)
#include "LabelTest.moc"
