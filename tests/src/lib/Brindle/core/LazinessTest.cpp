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

} // namespace

class LazinessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stepsOfSource();
};

void LazinessTest::stepsOfSource() {
    const auto verify = [](int locators, int steps, int associates, const std::function<bool()>& holds) {
        counts = {};
        QVERIFY(holds());
        QCOMPARE(counts.locators, locators);
        QCOMPARE(counts.steps, steps);
        QCOMPARE(counts.associates, associates);
    };
    verify(0, 0, 0, [] { return reduce(getCopies())._getLabel() == "Reduce(Flatten(Associates(Digits)))"; });
    verify(1, 4, 0, [] { return !Digits().getAt(4).isAtLeast(5); });
    verify(1, 7, 0, [] { return !getFrom(6).hasCount(1); });
    verify(1, 2, 0, [] { return !getHalves().hasCount(2); });
    verify(1, 7, 1, [] { return getHalves().getAt(7) == 3; });
    verify(1, 2, 3, [] { return !getCopies().hasCount(2); }); // 0 has no copy, 1 has one, 2 has two
    verify(1, 2, 3, [] { return !reduce(getHalves()).hasCount(1); });
    verify(1, 10, 11, [] { return reduce(getHalves()).getLast() == 4; });
    verify(1, 10, 10, [] { return getHalves().getRandomLocator().isValid(); });
}

QTEST_GUILESS_MAIN(LazinessTest)
#include "LazinessTest.moc"
