#include <support/ConsoleRecorder.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/generation/Generation.h>
#include <velmora/widgets/FoldWidget.h>
#include <velmora/window/AboutLeaf.h>
#include <velmora/window/Folio.h>
#include <velmora/window/IPsLeaf.h>
#include <velmora/window/MainWindow.h>
#include <velmora/window/SettingsLeaf.h>
#include <velmora/window/Usage.h>

#include <Brindle/core/Exception.h>

#include <QLabel>
#include <QSettings>
#include <QStackedWidget>
#include <QToolButton>

#include <memory>

using Velmora::FoldWidget;
using Velmora::Folio;
using Velmora::MainWindow;

/// The window, its folio and the widgets that forms are built from.
class ShellTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestPrefix> _prefix;

private Q_SLOTS:
    void init() { _prefix = std::make_unique<TestPrefix>(); }
    void cleanup() { _prefix.reset(); }

    void firstStart();
    void geometryIsKept();
    void maximisedWindowIgnoresItsGeometry();
    void hugeCountsInAStoredStateDoNoHarm_data();
    void hugeCountsInAStoredStateDoNoHarm();
    void folioPages();
    void folioIgnoresUnknownIds();
    void foldWidget_data();
    void foldWidget();
    void generationFailures();
    void usageText();
};

void ShellTest::firstStart() {
    MainWindow window;
    QVERIFY(window.isVisible());
    QCOMPARE(window.windowTitle(), QStringLiteral("Velmora"));
    QVERIFY(!window.windowIcon().isNull());
    QCOMPARE(window.size(), QSize(1000, 600));
    const auto* splitter = window.findChild<QSplitter*>("ConsoleSplitter");
    QCOMPARE(window.centralWidget(), splitter);
    QCOMPARE(splitter->widget(0)->objectName(), QStringLiteral("Folio"));
    QCOMPARE(splitter->widget(1)->objectName(), QStringLiteral("Console"));
    const QList<int> sizes = splitter->sizes();
    QVERIFY(qAbs(sizes.at(0) - 3 * sizes.at(1)) <= 4);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("About"));
    window.resize(1000, 900);
    QCOMPARE(splitter->sizes().at(1), sizes.at(1)); // the console keeps its height
}

void ShellTest::geometryIsKept() {
    QList<int> sizes;
    {
        MainWindow window;
        window.resize(800, 500);
        auto* splitter = window.findChild<QSplitter*>("ConsoleSplitter");
        splitter->setSizes({200, 300});
        sizes = splitter->sizes();
        QVERIFY(QSettings().allKeys().isEmpty());
        window.close();
    }
    QStringList keys = QSettings().allKeys();
    QCOMPARE(keys, QStringList({"consoleSplitter", "geometry", "isMaximized", "windowState"}));
    MainWindow window;
    QCOMPARE(window.size(), QSize(800, 500));
    QCOMPARE(window.findChild<QSplitter*>("ConsoleSplitter")->sizes(), sizes);
}

void ShellTest::maximisedWindowIgnoresItsGeometry() {
    {
        MainWindow window;
        window.resize(640, 480);
        window.close();
    }
    QCOMPARE(QSettings().value("isMaximized").toBool(), false);
    {
        MainWindow window;
        window.showMaximized();
        window.close();
    }
    QCOMPARE(QSettings().value("isMaximized").toBool(), true);
    const MainWindow window;
    QVERIFY(window.isMaximized());
    QCOMPARE(window.normalGeometry().size(), QSize(1000, 600)); // and not the stored size
}

void ShellTest::hugeCountsInAStoredStateDoNoHarm_data() {
    const TestTable<QString, int> table("key", "place");
    table.row("dock areas", "windowState", 9);
    table.row("tool bar lines", "windowState", -4);
    table.row("sizes", "consoleSplitter", 8);
}

void ShellTest::hugeCountsInAStoredStateDoNoHarm() {
    QFETCH(QString, key);
    QFETCH(int, place);
    MainWindow().close();
    QByteArray state = QSettings().value(key).toByteArray();
    state.replace(place < 0 ? state.size() + place : place, 4, "\x7f\xff\xff\xff");
    QSettings().setValue(key, state);
    const MainWindow window; // which the huge counts would take for ever
    QVERIFY(window.isVisible());
}

void ShellTest::folioPages() {
    const MainWindow window;
    const auto* folio = window.findChild<Folio*>();
    const auto* stack = folio->findChild<QStackedWidget*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(qobject_cast<Velmora::IPsLeaf*>(stack->widget(0)));
    QVERIFY(stack->widget(1)->findChild<Velmora::AboutLeaf*>());
    QVERIFY(qobject_cast<Velmora::SettingsLeaf*>(stack->widget(2)));
    QCOMPARE(folio->getAboutLeafIndex(), 1);
    QCOMPARE(folio->getCurrentIndex(), 1);
    const auto* title = folio->findChild<QLabel*>("titleLabel");
    QCOMPARE(title->text(), QStringLiteral("<b>About</b>"));
    const QStringList titles{"<b>IPs</b>", "<b>About</b>", "<b>About</b>"}; // settings leave the title alone
    int index = 0;
    for (const char* name : {"IPs", "About", "Settings"}) {
        auto* button = folio->findChild<QToolButton*>(name);
        QCOMPARE(button->text(), name);
        QVERIFY(!button->icon().isNull());
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(button->isChecked());
        QCOMPARE(title->text(), titles.at(index));
        QCOMPARE(folio->getCurrentIndex(), index++);
    }
}

void ShellTest::folioIgnoresUnknownIds() {
    const MainWindow window;
    auto* folio = window.findChild<Folio*>();
    for (const unsigned long id : {3UL, 0x100000000UL, ~0UL}) {
        folio->raiseLeaf(id);
        folio->disableLeaf(id);
    }
    QCOMPARE(folio->getCurrentIndex(), 1);
    folio->disableLeaf(0);
    folio->raiseLeaf(0);
    QCOMPARE(folio->getCurrentIndex(), 1); // a disabled button cannot be clicked
    folio->enableLeaf(0);
    folio->raiseLeaf(0);
    QCOMPARE(folio->getCurrentIndex(), 0);
}

void ShellTest::foldWidget_data() {
    const TestTable<QString, bool> table("animations", "isAnimated");
    table.row("in lower case", "never", true);
    table.row("never", "Never", false);
}

void ShellTest::foldWidget() {
    QFETCH(QString, animations);
    QFETCH(bool, isAnimated);
    QSettings().setValue("animations", animations);
    QWidget window;
    auto* fold = new FoldWidget("Global parameters", &window);
    auto* field = new QLabel("field");
    field->setMinimumHeight(70);
    fold->addWidget(field, 0, 0);
    fold->finalize();
    window.resize(400, 300);
    window.show();
    auto* toggle = fold->findChild<QToolButton*>();
    const QWidget* body = field->parentWidget();
    QCOMPARE(body->height(), 0);
    const int contentHeight = body->layout()->sizeHint().height();
    QTest::mouseClick(toggle, Qt::LeftButton);
    QCOMPARE(toggle->arrowType(), Qt::DownArrow);
    QCOMPARE(body->maximumHeight() < contentHeight, isAnimated);
    QTRY_COMPARE(body->maximumHeight(), contentHeight);
    QTest::mouseClick(fold->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly), Qt::LeftButton); // the rule
    QCOMPARE(toggle->arrowType(), Qt::RightArrow);
    QTRY_COMPARE(body->maximumHeight(), 0);
    QTRY_VERIFY(body->isHidden()); // or Tab would reach the field
}

void ShellTest::generationFailures() {
    using namespace Velmora::FailureRules;
    const auto tell = [](const Velmora::FailureRule& rule, int kind) {
        ConsoleRecorder recorder;
        Velmora::Generation generation;
        generation.title = "Title";
        generation.failureRule = rule;
        generation.check = [kind] {
            if (kind == 4)
                Brindle::console.error("refused");
            return kind != 4;
        };
        generation.run(BRINDLE_HERE, [kind] {
            if (kind == 1)
                throw Brindle::located(Brindle::InvalidRequest("Own text"), BRINDLE_HERE, {{"field", "value"}});
            if (kind == 2)
                throw std::runtime_error("standard text");
            if (kind == 3)
                throw 7;
            return true;
        });
        Brindle::console.print("after");
        return recorder.lines().join('|');
    };
    QCOMPARE(tell(bridge, 0), "Title|  Generating done|after");
    QCOMPARE(tell(bridge, 1), "Title|E:   Own text (field: value)|  Generating Failed|after");
    QCOMPARE(tell(bridge, 2), "Title|E:   Processing aborted [standard text]|  Generating Failed|after");
    QCOMPARE(tell(filter, 1), "Title|E:   Processing aborted [Own text] (field: value)|  Generating failed|after");
    QCOMPARE(tell(filter, 2), "Title|E:   Processing aborted [something strange...]|  Generating failed|after");
    QCOMPARE(tell(filter, 3), "Title|E:   Processing aborted [something strange...]|  Generating failed|after");
    QCOMPARE(tell(lineTable, 1), "Title|E:   Processing aborted [Own text] (field: value)|  Generating Failed|after");
    QCOMPARE(tell(lineTable, 2), "Title|E:   Processing aborted [standard text]|  Generating Failed|after");
    QCOMPARE(tell(lineTable, 4), "Title|E:   refused|  Generating failed|after");
}

void ShellTest::usageText() {
    ConsoleRecorder recorder;
    Velmora::usage();
    Brindle::console.unindent();
    Brindle::console.unindent();
    QCOMPARE(recorder.lines(), QStringList({"Usage: velmora [options]",
                                            "  Options are:", "    -check         : Execute check syntax on benchs", "",
                                            "    -help          : print this help"}));
}

VELMORA_TEST_MAIN(ShellTest)
#include "tst_shell.moc"
