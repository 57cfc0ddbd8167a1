#include <Brindle/collections/Collections.h>

#include <QtTest>

#include <functional>

using namespace Brindle;

namespace {

int calls = 0; ///< Of members of the numbers, since the last reset.

class Number {
public:
    explicit Number(int value = 0) : _value(value) {}

    int getHalf() const {
        ++calls;
        return _value / 2;
    }
    Collection<int> getCopies() const {
        ++calls;
        return ListCollection(std::list<int>(static_cast<std::size_t>(_value), _value)); // 0 has none, 3 has three
    }
    bool isAtLeast(int other) const {
        ++calls;
        return _value >= other;
    }

private:
    int _value;
};

} // namespace

class LazinessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void elementsAreAskedWhenNeeded();
};

void LazinessTest::elementsAreAskedWhenNeeded() {
    std::list<Number> digits;
    for (int digit = 0; digit < 10; ++digit)
        digits.emplace_back(digit);
    const ListCollection numbers(digits);
    const auto halves = associates(numbers, &Number::getHalf);
    const auto copies = flatten(associates(numbers, &Number::getCopies));
    const auto verify = [](int expectedCalls, const std::function<bool()>& holds) {
        calls = 0;
        QVERIFY(holds());
        QCOMPARE(calls, expectedCalls);
    };
    verify(0, [&] { return reduce(copies)._getLabel() == "Reduce(Flatten(Associates(List)))"; });
    verify(1, [&] { return !subset(numbers, &Number::isAtLeast, 0).isEmpty(); });
    verify(8, [&] { return !subset(numbers, &Number::isAtLeast, 6).hasCount(1); });
    verify(0, [&] { return !halves.hasCount(2); });
    verify(1, [&] { return halves.getAt(7) == 3; });
    verify(3, [&] { return !copies.hasCount(2); }); // 0 has no copy, 1 has one, 2 has two
    verify(3, [&] { return !reduce(halves).hasCount(1); });
    verify(11, [&] { return reduce(halves).getLast() == 4; });
    verify(10, [&] { return halves.getRandomLocator().isValid(); });
}

QTEST_GUILESS_MAIN(LazinessTest)
#include "LazinessTest.moc"
