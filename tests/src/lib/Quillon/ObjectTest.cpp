#include <support/TestMain.h>

#include <Quillon/Owned.h>

#include <Brindle/core/Exception.h>

#include <QTest>

namespace {

enum Step { PreCreate, Construction, PostCreate, None };

QStringList steps;

void take(const char* name, bool fails) {
    steps << name;
    if (fails)
        throw Brindle::FactoryFailed(name);
}

/// Notes each step of its life and fails in the one that it is told to.
class Probe : public Quillon::Object {
public:
    Probe(Step failing, int) { take("construct", failing == Construction); }
    ~Probe() override { steps << "destroy"; }

    static void preCreate(Step failing, int) {
        Object::preCreate();
        take("preCreate", failing == PreCreate);
    }
    void postCreate(Step failing, int) {
        take("postCreate", failing == PostCreate);
        Object::postCreate();
    }
    void preDestroy() override {
        Object::preDestroy();
        steps << (getRecord() ? "preDestroy, reportable" : "preDestroy");
    }

    std::string getAlias() const override { return "Probe"; }

protected:
    std::string _getLabel() const override { return getUpdatedLabel(Object::_getLabel(), "Probe"); }
};

} // namespace

class ObjectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void runsEveryStep();
    void describesItself();
};

void ObjectTest::runsEveryStep() {
    const auto stepsWith = [](Step failing) {
        steps.clear();
        try {
            const Quillon::Owned<Probe> probe = Quillon::create<Probe>(failing, 5);
            steps << "use";
        } catch (const Brindle::FactoryFailed& error) {
            steps << QStringLiteral("failed: ") + error.what();
        }
        return steps.join(", ");
    };
    QCOMPARE(stepsWith(None), "preCreate, construct, postCreate, use, preDestroy, destroy");
    QCOMPARE(stepsWith(PreCreate), "preCreate, failed: preCreate");
    QCOMPARE(stepsWith(Construction), "preCreate, construct, failed: construct");
    QCOMPARE(stepsWith(PostCreate), "preCreate, construct, postCreate, preDestroy, destroy, failed: postCreate");
}

void ObjectTest::describesItself() {
    const Quillon::Owned<Probe> probe = Quillon::create<Probe>(None, 5);
    QCOMPARE(probe->getLabel(), std::string("Object/Probe"));
    QCOMPARE(probe->getRecord()->getHeader(), std::string("Probe"));
    const Probe unfinished(None, 5);
    QVERIFY(!unfinished.getRecord());
}

VELMORA_TEST_MAIN(ObjectTest)
#include "ObjectTest.moc"
