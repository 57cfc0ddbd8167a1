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
    table.row("zero", 0.0, "0.0");
    table.row("negative zero", -0.0, "-0.0");
    table.row("negative", -1234.5678, "-1234.5678");
    table.row("shortest that reads back", 0.1, "0.1");
    table.row("all digits", 0.1 + 0.2, "0.30000000000000004");
    table.row("small", 1e-7, "0.0000001");
    table.row("million", 1e6, "1000000.0");
    table.row("2 to the power of 53", 9007199254740992.0, "9007199254740992.0");
    table.row("large", 1e300, {});
    table.row("largest", std::numeric_limits<double>::max(), {});
    table.row("smallest", std::numeric_limits<double>::denorm_min(), "0." + QString(323, '0') + "5");
    table.row("longest", -2.2250738585072014e-308, "-0." + QString(307, '0') + "22250738585072014");
    table.row("infinity", std::numeric_limits<double>::infinity(), "inf");
    table.row("negative infinity", -std::numeric_limits<double>::infinity(), "-inf");
    table.row("not a number", std::numeric_limits<double>::quiet_NaN(), "nan");
}

void LabelTest::numbers() {
    QFETCH(double, number);
    QFETCH(QString, label);
    const auto text = [number] {
        const ForeignLocale foreign;
        return QString::fromStdString(getLabel(number));
    }();
    if (label.isNull()) { // too long to stand in the table
        QVERIFY2(QRegularExpression("^[0-9]{301,309}\\.0$").match(text).hasMatch(), qPrintable(text));
        QCOMPARE(text.toDouble(), number);
        return;
    }
    QCOMPARE(text, label);
    if (std::isfinite(number))
        QCOMPARE(text.toDouble(), number);
}

QTEST_GUILESS_MAIN(LabelTest)
#include "LabelTest.moc"
