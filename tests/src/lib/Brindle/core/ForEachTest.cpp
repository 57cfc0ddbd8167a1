#include <Brindle/collections/Collections.h>

#include <QtTest>

using namespace Brindle;

namespace {

const std::list<int> digits{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

int getFirstAbove(int limit, const Collection<int>& numbers) {
    BRINDLE_FOR_EACH(number, numbers) {
        if (number > limit)
            return number;
    }
    return -1;
}

} // namespace

class ForEachTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void breakAndContinueInNestedLoops();
    void leftByReturn();
    void elementRemovedByItsLoop();
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

void ForEachTest::leftByReturn() {
    const ListCollection numbers(digits);
    QCOMPARE(getFirstAbove(4, numbers), 5);
    QCOMPARE(getFirstAbove(9, numbers), -1);
    QCOMPARE(getFirstAbove(0, {}), -1);
    int sum = 0;
    BRINDLE_FOR_EACH(number, numbers) {
        sum += number * getFirstAbove(number, numbers); // a loop inside the body's expression
    }
    QCOMPARE(sum, 0 * 1 + 1 * 2 + 2 * 3 + 3 * 4 + 4 * 5 + 5 * 6 + 6 * 7 + 7 * 8 + 8 * 9 - 9);
}

void ForEachTest::elementRemovedByItsLoop() {
    std::list<int> list = digits;
    BRINDLE_FOR_EACH(number, ListCollection(list)) {
        if (number % 2 == 0)
            list.remove(number);
    }
    QCOMPARE(list, (std::list<int>{1, 3, 5, 7, 9}));
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
