#include <Brindle/core/Exception.h>

#include <QtTest>

using namespace Brindle;

namespace {

const Location place{"src/bin/velmora/IPLeaf", "parse", 12};
const std::initializer_list<Exception::Field> fields{{"key", "k"}, {"value", "v"}};

} // namespace

class ExceptionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void kindIsKept();
    void fieldsAreInOrder();
    void location();
};

void ExceptionTest::kindIsKept() {
    const auto verify = [](const auto& fail) {
        try {
            fail();
            QFAIL("nothing was thrown");
        } catch (const Critical& exception) { // and no base of it alone
            QCOMPARE(exception.what(), "message");
            QVERIFY(exception.getLocation() == place && exception.getFields() == Exception::Fields(fields));
        }
    };
    verify([] { throw located(Critical("message"), place, fields); });
    verify([] { throw reworded<Critical>("message", located(Interruption("other"), place, fields)); });
    verify([] { // the first place on its way counts
        locatedAt(BRINDLE_HERE, [] { locatedAt(place, [] { throw withFields(Critical("message"), fields); }); });
    });
    try {
        throw located(InternalError("message"), place);
    } catch (const Fatal& exception) {
        QVERIFY(dynamic_cast<const InternalError*>(&exception));
    }
}

void ExceptionTest::fieldsAreInOrder() {
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
