#include <support/TestTable.h>

#include <Brindle/core/Exception.h>

#include <QtTest>

#include <functional>
#include <typeinfo>

using namespace Brindle;

namespace {

const Location place{"src/bin/velmora/IPLeaf", "parse", 12};

using Throw = std::function<void()>;

template <typename E>
void addRows(const char* name) {
    QTest::newRow(qPrintable(QString("located ") + name)) << Throw([] {
        throw located(E("message"), place, {{"key", "k"}, {"value", "v"}});
    }) << QByteArray(typeid(E).name());
    QTest::newRow(qPrintable(QString("reworded to ") + name)) << Throw([] {
        throw reworded<E>("message", located(Interruption("other"), place, {{"key", "k"}, {"value", "v"}}));
    }) << QByteArray(typeid(E).name());
    QTest::newRow(qPrintable(QString("located on its way ") + name)) << Throw([] {
        locatedAt(BRINDLE_HERE, [] {
            locatedAt(place, [] { throw withFields(E("message"), {{"key", "k"}, {"value", "v"}}); });
        });
    }) << QByteArray(typeid(E).name());
}

} // namespace

Q_DECLARE_METATYPE(Throw)

class ExceptionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void kindIsKept_data();
    void kindIsKept();
    void fields();
    void location();
};

void ExceptionTest::kindIsKept_data() {
    TestTable<Throw, QByteArray>("fail", "kind");
    addRows<Error>("Error");
    addRows<Critical>("Critical");
    addRows<InternalError>("InternalError");
    addRows<InvalidRequest>("InvalidRequest");
    addRows<FactoryFailed>("FactoryFailed");
    addRows<Interruption>("Interruption");
}

void ExceptionTest::kindIsKept() {
    QFETCH(Throw, fail);
    QFETCH(QByteArray, kind);
    try {
        fail();
        QFAIL("nothing was thrown");
    } catch (const Exception& exception) {
        QCOMPARE(QByteArray(typeid(exception).name()), kind);
        QCOMPARE(exception.what(), "message");
        QVERIFY(exception.getLocation() == place);
        QVERIFY((exception.getFields() == Exception::Fields{{"key", "k"}, {"value", "v"}}));
    }
}

void ExceptionTest::fields() {
    Fatal exception("message");
    exception.addField("b", "1");
    exception.addField("a", "2");
    exception.addField("b", "3");
    QVERIFY((exception.getFields() == Exception::Fields{{"b", "1"}, {"a", "2"}, {"b", "3"}}));
    QCOMPARE(exception.getField("b"), std::string("1"));
    QCOMPARE(exception.getField("c"), std::string());
}

void ExceptionTest::location() {
    const Location here = BRINDLE_HERE;
    QCOMPARE(here.line, __LINE__ - 1);
    QCOMPARE(std::string(here.function), std::string("location"));
    QCOMPARE(std::string(here.file), std::string("tests/src/lib/Brindle/core/ExceptionTest"));
    QCOMPARE(std::string(withoutExtension("a.b/c")), std::string("a.b/c"));
    QCOMPARE(std::string(withoutExtension("a.b/c.d.h")), std::string("a.b/c.d"));
}

QTEST_GUILESS_MAIN(ExceptionTest)
#include "ExceptionTest.moc"
