#include "ForeignLocale.h"

#include <support/TestTable.h>

#include <Brindle/core/Label.h>

#include <QtTest>

#include <cmath>
#include <limits>

using namespace Brindle;

class LabelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbers_data();
    void numbers();
};

void LabelTest::numbers_data() {
    const TestTable<double, QString> table("number", "label");
    table.row("half", 0.5, "0.5");
    table.row("whole", 20.0, "20.0");
    table.row("negative zero", -0.0, "-0.0");
    table.row("shortest that reads back", 0.1, "0.1");
    table.row("million", 1e6, "1000000.0");
    table.row("smallest", std::numeric_limits<double>::denorm_min(), "0." + QString(323, '0') + "5");
    table.row("infinity", std::numeric_limits<double>::infinity(), "inf");
    table.row("not a number", std::numeric_limits<double>::quiet_NaN(), "nan");
}

void LabelTest::numbers() {
    QFETCH(double, number);
    QFETCH(QString, label);
    const auto text = [number] {
        const ForeignLocale foreign;
        return QString::fromStdString(getLabel(number));
    }();
    QCOMPARE(text, label);
    if (std::isfinite(number))
        QCOMPARE(text.toDouble(), number);
}

QTEST_GUILESS_MAIN(LabelTest)
#include "LabelTest.moc"
