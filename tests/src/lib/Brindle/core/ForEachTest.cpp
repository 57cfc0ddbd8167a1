#include <Brindle/collections/Collections.h>

#include <QtTest>

using namespace Brindle;

namespace {

const std::list<int> digits{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

} // namespace

class ForEachTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void breakAndContinueInNestedLoops();
    void keysAndValues();
};

void ForEachTest::breakAndContinueInNestedLoops() {
    const ListCollection numbers(digits);
    QStringList met;
    BRINDLE_FOR_EACH(tens, numbers) {
        if (tens % 2 == 0)
            continue;
        BRINDLE_FOR_EACH(ones, numbers) {
            QVERIFY(ForEachControler<int>::_continue);
            if (ones == 1)
                continue;
            if (ones > 2)
                break;
            met += QString::number(10 * tens + ones);
        }
        if (tens == 5)
            break;
    }
    QCOMPARE(met, (QStringList{"10", "12", "30", "32", "50", "52"}));
    QVERIFY(!ForEachControler<int>::_continue);
}

void ForEachTest::keysAndValues() {
    const std::map<QString, QString> colours{{"border", "grey"}, {"accent", "blue"}, {"text", "black"}, {"x", "y"}};
    QStringList met;
    BRINDLE_FOR_EACH_KEY_VALUE(name, colour, colours) {
        if (name == "border")
            continue;
        if (name == "x")
            break;
        met += name + "=" + colour;
    }
    QCOMPARE(met, (QStringList{"accent=blue", "text=black"}));
    QVERIFY(!(ForEachKeyValueControler<QString, QString>::_continue));
}

QTEST_GUILESS_MAIN(ForEachTest)
#include "ForEachTest.moc"
