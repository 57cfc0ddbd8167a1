#include <support/ConsoleRecorder.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/generation/Generation.h>
#include <velmora/widgets/FoldWidget.h>
#include <velmora/widgets/HelpLabel.h>
#include <velmora/window/AboutLeaf.h>
#include <velmora/window/Folio.h>
#include <velmora/window/IPsLeaf.h>
#include <velmora/window/MainWindow.h>
#include <velmora/window/SettingsLeaf.h>
#include <velmora/window/Usage.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QDataStream>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QLabel>
#include <QPropertyAnimation>
#include <QScreen>
#include <QSettings>
#include <QStackedWidget>
#include <QToolButton>

#include <array>
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
    void geometryOfALargerScreen_data();
    void geometryOfALargerScreen();
    void hugeCountsInAStoredStateDoNoHarm_data();
    void hugeCountsInAStoredStateDoNoHarm();
    void folioPages();
    void folioIgnoresUnknownIds();
    void titlesFollowThePages();
    void foldWidget_data();
    void foldWidget();
    void unfinishedFoldWidgetStaysEmpty();
    void helpLabel();
    void generationFailures_data();
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
        window.showMaximized();
        window.close();
    }
    QCOMPARE(QSettings().value("isMaximized").toBool(), true);
    QSettings().setValue("isMaximized", false);
    {
        MainWindow window;
        window.showNormal();
        window.resize(640, 480);
        window.close();
    }
    QSettings().setValue("isMaximized", true);
    const MainWindow window;
    QVERIFY(window.isMaximized());
    QCOMPARE(window.normalGeometry().size(), QSize(1000, 600)); // and not the stored size
}

void ShellTest::geometryOfALargerScreen_data() {
    const TestTable<QRect, int> table("place", "screen");
    table.row("beyond the right edge", QRect(4000, 300, 700, 500), 0);
    table.row("beyond the lower edge", QRect(50, 2000, 700, 500), 0);
    table.row("on a screen at the left", QRect(-1800, -900, 700, 500), 1);
    table.row("larger than the screen", QRect(0, 30, 4800, 2700), 0);
    table.row("beyond every number", QRect(2'000'000'000, 2'000'000'000, 700, 500), 7);
}

void ShellTest::geometryOfALargerScreen() {
    QFETCH(QRect, place);
    QFETCH(int, screen);
    QByteArray geometry;
    QDataStream stream(&geometry, QIODevice::WriteOnly); // as QWidget::saveGeometry writes it
    stream.setVersion(QDataStream::Qt_4_0);
    stream << quint32(0x1D9D0CB) << quint16(3) << quint16(0) << place.adjusted(0, -30, 0, 0) << place << qint32(screen)
           << quint8(0) << quint8(0) << qint32(5120) << place;
    QSettings().setValue("geometry", geometry);
    const MainWindow window;
    QVERIFY(window.isVisible());
    const QRect available = window.screen()->availableGeometry();
    const QRect titleBar(window.frameGeometry().topLeft(), QSize(window.width(), 1));
    QVERIFY2(available.contains(titleBar.center()), "the window cannot be moved by its title");
    QVERIFY(available.intersected(window.geometry()).width() >= available.width() / 2);
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
    constexpr qint64 patience = 10'000; // ms
    MainWindow().close();
    QByteArray state = QSettings().value(key).toByteArray();
    state.replace(place < 0 ? state.size() + place : place, 4, "\x7f\xff\xff\xff");
    QSettings().setValue(key, state);
    QElapsedTimer timer;
    timer.start();
    const MainWindow window;
    QVERIFY(window.isVisible());
    QVERIFY(timer.elapsed() < patience);
}

void ShellTest::folioPages() {
    const MainWindow window;
    auto* folio = window.findChild<Folio*>();
    auto* stack = folio->findChild<QStackedWidget*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(stack->count(), 3);
    QVERIFY(qobject_cast<Velmora::IPsLeaf*>(stack->widget(0)));
    QVERIFY(stack->widget(1)->findChild<Velmora::AboutLeaf*>());
    QVERIFY(qobject_cast<Velmora::SettingsLeaf*>(stack->widget(2)));
    QCOMPARE(folio->getAboutLeafIndex(), 1);
    QCOMPARE(folio->getCurrentIndex(), 1);

    auto* grid = qobject_cast<QGridLayout*>(folio->layout());
    const auto placeOf = [grid](QWidget* widget) {
        std::array<int, 4> place{};
        auto& [row, column, rowCount, columnCount] = place;
        grid->getItemPosition(grid->indexOf(widget), &row, &column, &rowCount, &columnCount);
        return QList<int>(place.begin(), place.end());
    };
    auto* buttonColumn = folio->findChild<QToolButton*>("IPs")->parentWidget();
    QCOMPARE(placeOf(buttonColumn), QList<int>({0, 0, 2, 1}));
    auto* title = folio->findChild<QLabel*>("titleLabel");
    QCOMPARE(placeOf(title), QList<int>({0, 1, 1, 1}));
    QCOMPARE(title->indent(), 1);
    QCOMPARE(title->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(placeOf(stack), QList<int>({1, 1, 1, 3}));
    QCOMPARE(grid->columnStretch(1), 1);
    QCOMPARE(grid->rowStretch(1), 1);
    QCOMPARE(buttonColumn->width(), 124);
    QCOMPARE(buttonColumn->layout()->spacing(), 12);
    QCOMPARE(buttonColumn->layout()->contentsMargins(), QMargins(0, 0, 12, 0));
    QVERIFY(buttonColumn->layout()->itemAt(1)->spacerItem()); // IPs at the top, the others at the bottom

    const QStringList names{"IPs", "About", "Settings"};
    for (int index = 0; index < names.size(); ++index) {
        auto* button = folio->findChild<QToolButton*>(names.at(index));
        QCOMPARE(button->text(), names.at(index));
        QCOMPARE(button->isChecked(), index == 1);
        QCOMPARE(button->width(), 100);
        QCOMPARE(button->iconSize(), QSize(32, 32));
        QVERIFY(!button->icon().isNull());
        QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
        QVERIFY(button->autoRaise());
    }
    for (int index = 0; index < names.size(); ++index) {
        QTest::mouseClick(folio->findChild<QToolButton*>(names.at(index)), Qt::LeftButton);
        QCOMPARE(folio->getCurrentIndex(), index);
        QVERIFY(folio->findChild<QToolButton*>(names.at(index))->isChecked());
    }
}

void ShellTest::folioIgnoresUnknownIds() {
    const MainWindow window;
    auto* folio = window.findChild<Folio*>();
    for (const unsigned long id : {3UL, 4UL, 0x100000000UL, ~0UL}) {
        folio->raiseLeaf(id);
        folio->disableLeaf(id);
        folio->enableLeaf(id);
    }
    QCOMPARE(folio->getCurrentIndex(), 1);
    const auto* ips = folio->findChild<QToolButton*>("IPs");
    QVERIFY(ips->isEnabled());
    folio->disableLeaf(0);
    QVERIFY(!ips->isEnabled());
    QCOMPARE(folio->getCurrentIndex(), 1);
    folio->raiseLeaf(0);
    QCOMPARE(folio->getCurrentIndex(), 1); // a disabled button cannot be clicked
    folio->enableLeaf(0);
    folio->raiseLeaf(0);
    QCOMPARE(folio->getCurrentIndex(), 0);
    QVERIFY(ips->isChecked());
}

void ShellTest::titlesFollowThePages() {
    const MainWindow window;
    auto* folio = window.findChild<Folio*>();
    const auto* title = folio->findChild<QLabel*>("titleLabel");
    QCOMPARE(title->text(), QStringLiteral("<b>About</b>"));
    folio->raiseLeaf(0);
    QCOMPARE(title->text(), QStringLiteral("<b>IPs</b>"));
    folio->raiseLeaf(2);
    QCOMPARE(title->text(), QStringLiteral("<b>IPs</b>"));
    folio->setTitle("Settings");
    QCOMPARE(title->text(), QStringLiteral("<b>Settings</b>"));
}

void ShellTest::foldWidget_data() {
    const TestTable<QVariant, int> table("animations", "duration");
    table.row("not stored", QVariant(), 200);
    table.row("Always", QVariant("Always"), 200);
    table.row("never in lower case", QVariant("never"), 200);
    table.row("Never", QVariant("Never"), 0);
}

void ShellTest::foldWidget() {
    QFETCH(QVariant, animations);
    QFETCH(int, duration);
    if (animations.isValid())
        QSettings().setValue("animations", animations);
    QWidget window;
    auto* fold = new FoldWidget("Global parameters", &window);
    auto* field = new QLabel("field");
    field->setMinimumHeight(70);
    fold->addWidget(field, 0, 0);
    fold->addWidget(new QLabel("wide"), 1, 0, 1, 2);
    fold->setColumnStretch(1, 3);
    fold->finalize();
    window.resize(400, 300);
    window.show();

    auto* toggle = fold->findChild<QToolButton*>();
    QWidget* body = field->parentWidget();
    QCOMPARE(toggle->text(), QStringLiteral("Global parameters"));
    QCOMPARE(toggle->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    QCOMPARE(toggle->styleSheet(),
             QStringLiteral("QToolButton { border: none; } QToolButton::checked { color: inherit; }"));
    QCOMPARE(fold->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)->text(), QStringLiteral("<hr />"));
    QCOMPARE(toggle->arrowType(), Qt::RightArrow);
    QCOMPARE(body->height(), 0);
    QCOMPARE(qobject_cast<QGridLayout*>(body->layout())->columnStretch(1), 3);
    const int contentHeight = body->layout()->sizeHint().height();

    QElapsedTimer timer;
    timer.start();
    QTest::mouseClick(toggle, Qt::LeftButton);
    QVERIFY(toggle->isChecked());
    QCOMPARE(toggle->arrowType(), Qt::DownArrow);
    if (duration == 0) {
        QCOMPARE(body->maximumHeight(), contentHeight);
    } else {
        QVERIFY(body->maximumHeight() < contentHeight);
        QTRY_COMPARE(body->maximumHeight(), contentHeight);
        QVERIFY(timer.elapsed() >= duration - 20);
    }
    QTest::mouseClick(toggle, Qt::LeftButton);
    QCOMPARE(toggle->arrowType(), Qt::RightArrow);
    QTRY_COMPARE(body->maximumHeight(), 0);
}

void ShellTest::unfinishedFoldWidgetStaysEmpty() {
    FoldWidget fold("Title", nullptr);
    fold.show();
    QTest::mouseClick(fold.findChild<QToolButton*>(), Qt::LeftButton);
    QCOMPARE(fold.findChild<QToolButton*>()->arrowType(), Qt::DownArrow);
    for (const QWidget* child : fold.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        QVERIFY(!child->layout());
}

void ShellTest::helpLabel() {
    const Velmora::HelpLabel label("Range 1 to 18.", nullptr);
    QCOMPARE(label.text(), QStringLiteral("Range 1 to 18."));
    QCOMPARE(label.styleSheet(), "QLabel { background-color: " + Brindle::theme.getColorName("row_hover") +
                                     "; padding: 0em 0.2em; border: 1px solid " +
                                     Brindle::theme.getColorName("border") + "}");
}

void ShellTest::generationFailures_data() {
    const TestTable<int, int, QStringList> table("family", "kind", "told");
    const auto row = [&table](const char* tag, int family, int kind, const char* first, const char* second) {
        table.row(tag, family, kind, {first, second});
    };
    const char* strange = "E:   Processing aborted [something strange...]";
    row("bridge: done", 0, 0, "  worked", "  Generating done");
    row("bridge: in-house", 0, 1, "E:   Own text (field: value)", "  Generating Failed");
    row("bridge: standard", 0, 2, "E:   Processing aborted [standard text]", "  Generating Failed");
    row("bridge: unrelated", 0, 3, strange, "  Generating Failed");
    row("filter: done", 1, 0, "  worked", "  Generating done");
    row("filter: in-house", 1, 1, "E:   Processing aborted [Own text] (field: value)", "  Generating failed");
    row("filter: standard", 1, 2, strange, "  Generating failed");
    row("filter: unrelated", 1, 3, strange, "  Generating failed");
    row("line table: in-house", 2, 1, "E:   Processing aborted [Own text] (field: value)", "  Generating Failed");
    row("line table: standard", 2, 2, "E:   Processing aborted [standard text]", "  Generating Failed");
    row("line table: refused", 2, 4, "E:   refused", "  Generating failed");
    row("filter: refused", 1, 4, "E:   refused", "  Generating failed");
}

void ShellTest::generationFailures() {
    QFETCH(int, family);
    QFETCH(int, kind);
    QFETCH(QStringList, told);
    ConsoleRecorder recorder;
    const QList<Velmora::FailureRule> rules{Velmora::FailureRules::bridge, Velmora::FailureRules::filter,
                                            Velmora::FailureRules::lineTable};
    Velmora::Generation generation;
    generation.title = "Title";
    generation.failureRule = rules.at(family);
    generation.check = [kind] {
        if (kind == 4)
            Brindle::console.error("refused");
        return kind != 4;
    };
    generation.run(BRINDLE_HERE, [kind] {
        Brindle::console.print("worked");
        if (kind == 1)
            throw Brindle::located(Brindle::InvalidRequest("Own text"), BRINDLE_HERE, {{"field", "value"}});
        if (kind == 2)
            throw std::runtime_error("standard text");
        if (kind == 3)
            throw 7;
        return true;
    });
    Brindle::console.print("after");
    QStringList lines = recorder.take();
    QCOMPARE(lines.takeFirst(), QStringLiteral("Title"));
    QCOMPARE(lines.takeLast(), QStringLiteral("after"));
    if (kind >= 1 && kind <= 3)
        QCOMPARE(lines.takeFirst(), QStringLiteral("  worked"));
    QCOMPARE(lines, told);
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
