#include <support/TestTable.h>

#include <Brindle/collections/Collections.h>

#include <QtTest>

#include <functional>

using namespace Brindle;

namespace {

/// What was asked of the source since the last reset.
struct Counts {
    int locators = 0;
    int steps = 0;
    int associates = 0;
};

Counts counts;

class Number {
public:
    Number() = default;
    explicit Number(int value) : _value(value) {}

    int getHalf() const {
        ++counts.associates;
        return _value / 2;
    }
    Collection<int> getCopies() const {
        ++counts.associates;
        return ListCollection(std::list<int>(static_cast<std::size_t>(_value), _value)); // 0 has none, 3 has three
    }
    bool isAtLeast(int other) const { return _value >= other; }

private:
    int _value = 0;
};

/// The numbers from 0 to 9; counts what is asked of it.
class Digits : public Collection<Number> {
public:
    class CountingLocator : public Locator<Number>::Driver {
    public:
        std::unique_ptr<Locator<Number>::Driver> getClone() const override {
            return std::make_unique<CountingLocator>(*this);
        }
        bool isValid() const override { return _value < 10; }
        Number getCurrent() const override { return Number(_value); }
        void progress() override {
            ++counts.steps;
            ++_value;
        }
        std::string _getLabel() const override { return "Digits"; }

    private:
        int _value = 0;
    };

    class Driver : public Collection<Number>::Driver {
    public:
        std::unique_ptr<Collection<Number>::Driver> getClone() const override {
            return std::make_unique<Driver>(*this);
        }
        Locator<Number> getLocator() const override {
            ++counts.locators;
            return Locator<Number>(std::make_unique<CountingLocator>());
        }
        std::string _getLabel() const override { return "Digits"; }
    };

    Digits() : Collection(std::make_unique<Driver>()) {}
};

SubsetCollection<Number> getFrom(int least) {
    return subset(Digits(), &Number::isAtLeast, least);
}

auto getHalves() {
    return associates(Digits(), &Number::getHalf);
}

auto getCopies() {
    return flatten(associates(Digits(), &Number::getCopies));
}

using Action = std::function<bool()>;

} // namespace

Q_DECLARE_METATYPE(Action)

class LazinessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stepsOfSource_data();
    void stepsOfSource();
};

void LazinessTest::stepsOfSource_data() {
    const TestTable<Action, int, int, int> table("holds", "locators", "steps", "associates");
    table.row(
        "making views", [] { return reduce(getCopies())._getLabel() == "Reduce(Flatten(Associates(Digits)))"; }, 0, 0,
        0);
    table.row(
        "index", [] { return !Digits().getAt(4).isAtLeast(5); }, 1, 4, 0);

    table.row(
        "subset has exactly", [] { return !getFrom(6).hasCount(1); }, 1, 7, 0);

    table.row(
        "associates has exactly", [] { return !getHalves().hasCount(2); }, 1, 2, 0);
    table.row(
        "associates index", [] { return getHalves().getAt(7) == 3; }, 1, 7, 1);

    // The first collection is empty, the second has one element, the third two.
    table.row(
        "flatten has exactly", [] { return !getCopies().hasCount(2); }, 1, 2, 3);

    table.row(
        "reduce has exactly", [] { return !reduce(getHalves()).hasCount(1); }, 1, 2, 3);
    table.row(
        "random walk", [] { return getHalves().getRandomLocator().isValid(); }, 1, 10, 10);
}

void LazinessTest::stepsOfSource() {
    QFETCH(Action, holds);
    counts = {};
    QVERIFY(holds());
    QTEST(counts.locators, "locators");
    QTEST(counts.steps, "steps");
    QTEST(counts.associates, "associates");
}

QTEST_GUILESS_MAIN(LazinessTest)
#include "LazinessTest.moc"
