#include "Part.h"

#include <support/TestTable.h>

#include <QtTest>

#include <algorithm>
#include <functional>
#include <ranges>

using namespace Brindle;

// Every template is compiled whole for each type of element that a program holds.
template class Brindle::Collection<Part>;
template class Brindle::ListCollection<strings>;
template class Brindle::SubsetCollection<Part*>;
template class Brindle::AssociatesCollection<Part, strings>;
template class Brindle::FlattenCollection<strings>;
template class Brindle::ReduceCollection<Part*>;
template class Brindle::ReduceCollection<strings>;
static_assert(std::ranges::input_range<strings>);

Q_DECLARE_METATYPE(Brindle::strings)

namespace {

strings made(std::list<std::string> elements) {
    return ListCollection(std::move(elements));
}

Collection<strings> madeOf(std::list<strings> collections) {
    return ListCollection(std::move(collections));
}

/// What is left of a walk.
QStringList getRest(Locator<std::string> locator) {
    QStringList rest;
    for (; locator.isValid(); locator.progress())
        rest += QString::fromStdString(locator.getCurrent());
    return rest;
}

QStringList getAll(const strings& collection) {
    return getRest(collection.getLocator());
}

QStringList reversed(QStringList texts) {
    std::ranges::reverse(texts);
    return texts;
}

QStringList sorted(QStringList texts) {
    texts.sort();
    return texts;
}

/// A cursor stands where it stood when a copy of it walks to the end, and the other way round; at the end it gives the
/// default value and stays there.
void checkCursor(Locator<std::string> locator, const QStringList& expected) {
    for (int passed = 0; passed < expected.size(); ++passed) {
        const Locator<std::string> copy = locator;
        QCOMPARE(getRest(locator), expected.mid(passed));
        locator.progress();
        QCOMPARE(getRest(copy), expected.mid(passed));
    }
    locator.progress();
    QVERIFY(!locator.isValid());
    QCOMPARE(locator.getCurrent(), std::string());
}

} // namespace

class CollectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyOperationAgrees_data();
    void everyOperationAgrees();
    void listIsSeenAsItIsWhenWalked();
    void ownedListLivesWithItsViews();
    void memberFunctionsOfPointersAndValues();
    void nullParts();
    void randomOrderFollowsKeys();
    void driverWithoutReverseWalk();
};

void CollectionTest::everyOperationAgrees_data() {
    static std::list<Part> parts{{"b1", {"x", "y"}}, {"a1", {}}, {"b2", {"y", "z"}}, {"c1", {"x"}}, {"a2", {}}};
    static PartPointers pointers;
    std::ranges::transform(parts, std::back_inserter(pointers), [](Part& part) { return &part; });
    static const std::list<std::string> list{"p", "q"};
    const ListCollection all(pointers);
    const auto names = [](const Collection<Part*>& some) { return associates(some, &Part::getName); };
    const auto ofKind = [all](const char* kind) { return subset(all, &Part::isOfKind, kind); };

    const TestTable<strings, QStringList, QString> table("collection", "expected", "label");
    table.row("null", strings(), {}, "");
    table.row("lent list", strings(ListCollection(list)), {"p", "q"}, "List");
    table.row("given list", made({"p", "", "p"}), {"p", "", "p"}, "List");
    table.row("associates", strings(names(all)), {"b1", "a1", "b2", "c1", "a2"}, "Associates(List)");
    table.row("subset, ends rejected", strings(names(subset(all, &Part::hasTags, 1))), {"c1"},
              "Associates(Subset(List))");
    table.row("subset, ends accepted", strings(names(ofKind("b"))), {"b1", "b2"}, "Associates(Subset(List))");
    table.row("subset of subset", strings(names(subset(ofKind("a"), &Part::hasTags, 0))), {"a1", "a2"},
              "Associates(Subset(Subset(List)))");
    table.row("flatten between empty ones", strings(flatten(madeOf({made({}), made({"x"}), made({})}))), {"x"},
              "Flatten(List)");
    table.row("flatten, gaps inside", strings(flatten(madeOf({made({"x", "y"}), {}, made({}), made({"x"})}))),
              {"x", "y", "x"}, "Flatten(List)");
    table.row("flatten twice",
              strings(flatten(flatten(Collection<Collection<strings>>(
                  ListCollection(std::list{madeOf({made({"x"})}), madeOf({made({"y"})})}))))),
              {"x", "y"}, "Flatten(Flatten(List))");
    table.row("reduce", strings(reduce(made({"a", "b", "a", "c", "b"}))), {"a", "b", "c"}, "Reduce(List)");
    table.row("reduce of collections",
              flatten(reduce(ListCollection(std::list{made({"a"}), made({"b"}), made({"a"}), made({"a", "b"})}))),
              {"a", "b", "a", "b"}, "Flatten(Reduce(List))");
    table.row("reduce of flatten of associates", strings(reduce(flatten(associates(all, &Part::getTags)))),
              {"x", "y", "z"}, "Reduce(Flatten(Associates(List)))");
}

void CollectionTest::everyOperationAgrees() {
    QFETCH(strings, collection);
    QFETCH(QStringList, expected);
    QFETCH(QString, label);
    const auto count = static_cast<unsigned long>(expected.size());

    QCOMPARE(collection.getCount(), count);
    for (unsigned long n = 0; n < count + 3; ++n)
        QCOMPARE(collection.hasCount(n), n == count);
    QCOMPARE(collection.isEmpty(), expected.isEmpty());
    QCOMPARE(QString::fromStdString(collection.getFirst()), expected.value(0));
    QCOMPARE(QString::fromStdString(collection.getLast()), expected.value(expected.size() - 1));
    for (int index = 0; index < expected.size() + 2; ++index)
        QCOMPARE(QString::fromStdString(collection.getAt(static_cast<unsigned long>(index))), expected.value(index));
    QCOMPARE(QString::fromStdString(collection._getLabel()), label);

    checkCursor(collection.getLocator(), expected);
    checkCursor(collection.getReverseLocator(), reversed(expected));
    const RandomLocator<std::string> randomLocator = collection.getRandomLocator();
    QCOMPARE(sorted(getRest(randomLocator)), sorted(expected));
    checkCursor(randomLocator, getRest(randomLocator));

    QStringList looped;
    for (const std::string& element : collection)
        looped += QString::fromStdString(element);
    QCOMPARE(looped, expected);

    strings copy = collection;
    const strings moved = std::move(copy);
    QCOMPARE(getAll(moved), expected);
    copy = moved;
    QCOMPARE(getAll(copy), expected);
}

void CollectionTest::listIsSeenAsItIsWhenWalked() {
    std::list<std::string> list{"a"};
    const strings view = reduce(ListCollection(list));
    auto locator = view.getLocator();
    list.emplace_back("b");
    list.emplace_front("c");
    QCOMPARE(getAll(view), (QStringList{"c", "a", "b"}));
    QCOMPARE(getRest(locator), (QStringList{"a", "b"}));
    auto backwards = ListCollection(list).getReverseLocator();
    list.emplace_back("behind");
    QCOMPARE(backwards.getCurrent(), std::string("b"));
    backwards.progress();
    list.remove("b"); // just passed
    list.emplace_front("ahead");
    QCOMPARE(getRest(backwards), (QStringList{"a", "c", "ahead"}));
    list.clear();
    QVERIFY(view.isEmpty());
}

void CollectionTest::ownedListLivesWithItsViews() {
    std::list<std::string> list{"a", "b", "a"};
    strings view = reduce(ListCollection(std::move(list)));
    auto locator = view.getLocator();
    auto reverseLocator = made({"p", "q"}).getReverseLocator();
    const strings copy = view;
    view = {};
    QCOMPARE(getAll(copy), (QStringList{"a", "b"}));
    QCOMPARE(getRest(locator), (QStringList{"a", "b"}));
    QCOMPARE(getRest(reverseLocator), (QStringList{"q", "p"}));
    const auto shared = std::make_shared<const std::list<std::string>>(2, "s");
    const strings sharing{ListCollection(shared)};
    QCOMPARE(shared.use_count(), 2L);
}

void CollectionTest::memberFunctionsOfPointersAndValues() {
    std::list<Part> parts{{"b1", {"x"}}, {"a1", {}}, {"b2", {}}};
    const ListCollection values(parts);
    const PartPointers pointerList{&parts.front(), nullptr, &parts.back()};
    const ListCollection pointers(pointerList);

    const MemberDatumPredicate isOfKindB(&Part::isOfKind, "b");
    QCOMPARE(getAll(associates(subset(pointers, isOfKindB), MemberAccessor(&Part::getName))),
             (QStringList{"b1", "b2"}));
    QCOMPARE(getAll(associates(subset(values, &Part::isOfKind, "b"), &Part::getKind)), (QStringList{"b", "b"}));
    QCOMPARE(getAll(associates(pointers, &Part::getName)), (QStringList{"b1", "", "b2"}));

    using ValuePredicate = MemberDatumPredicate<Part, const std::string&>;
    const Predicate<Part> isOfKindA(ValuePredicate::Driver(&Part::isOfKind, "b").getClone("a"));
    QCOMPARE(getAll(associates(subset(values, isOfKindA), &Part::getName)), QStringList{"a1"});

    // An element's default value has a name, an element that is not there has none.
    QCOMPARE(associates(values, &Part::getName).getAt(3), std::string());
    QCOMPARE(associates(Collection<Part>(), &Part::getName).getFirst(), std::string());
    QCOMPARE(pointers.getAt(7), nullptr);
}

void CollectionTest::nullParts() {
    const Collection<Part> values = ListCollection(std::list<Part>{{"b1", {}}});
    QVERIFY(subset(values, Predicate<Part>()).isEmpty());
    QCOMPARE(getAll(associates(values, Accessor<Part, std::string>())), QStringList{""});
    QCOMPARE(Locator<std::string>()._getLabel(), std::string());
    checkCursor(Locator<std::string>(), {});
    checkCursor(ReverseLocator<std::string>(), {});
    checkCursor(RandomLocator<std::string>(), {});
    QCOMPARE(reduce(made({"a"})).getLocator()._getLabel(), std::string("Reduce(List)"));
}

void CollectionTest::randomOrderFollowsKeys() {
    const strings list = made({"a", "b", "a", "c"});
    checkCursor(RandomLocator<std::string>(list.getLocator(), [] { return 7UL; }), {"a", "b", "a", "c"});
    static unsigned long key = 1000;
    const auto fallingKey = [] { return key--; };
    checkCursor(RandomLocator<std::string>(list.getLocator(), fallingKey), {"c", "a", "b", "a"});
    QVERIFY(getRandomValue() != getRandomValue() || getRandomValue() != getRandomValue());
}

void CollectionTest::driverWithoutReverseWalk() {
    class Forward : public strings::Driver {
    public:
        std::unique_ptr<strings::Driver> getClone() const override { return std::make_unique<Forward>(*this); }
        Locator<std::string> getLocator() const override { return made({"a", "b"}).getLocator(); }
        std::string _getLabel() const override { return "Forward"; }
    };
    const strings collection(std::make_unique<Forward>());
    checkCursor(collection.getReverseLocator(), {"b", "a"});
    QCOMPARE(collection.getLast(), std::string("b"));
    QVERIFY(std::ranges::find(collection, "b") != collection.end());
}

QTEST_GUILESS_MAIN(CollectionTest)
#include "CollectionTest.moc"
