#include <support/TestMain.h>
#include <support/TestTable.h>

#include <Quillon/ConsoleWidget.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/Theme.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <iostream>
#include <memory>
#include <sstream>

using Quillon::ConsoleWidget;

namespace {

/// Keeps the console's lines off the test's own output while it lives.
class Quiet {
public:
    ~Quiet() {
        std::cout.rdbuf(_output);
        std::cerr.rdbuf(_errors);
    }

private:
    std::ostringstream _sink;
    std::streambuf* _output = std::cout.rdbuf(_sink.rdbuf());
    std::streambuf* _errors = std::cerr.rdbuf(_sink.rdbuf());
};

void print(int from, int count) {
    const Quiet quiet;
    for (int number = from; number < from + count; ++number)
        Brindle::console.print("line " + std::to_string(number));
}

/// Opens the context menu as a right click does and clicks the entry; false when it cannot be chosen.
bool chooseFromMenu(ConsoleWidget& widget, const QString& entry) {
    bool chosen = false;
    QTimer robot;
    QObject::connect(&robot, &QTimer::timeout, &robot, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (QAction* action : menu->actions()) {
            chosen = chosen || (action->text().remove(QLatin1Char('&')) == entry && action->isEnabled());
            if (chosen) {
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
                return;
            }
        }
        menu->close();
    });
    robot.setSingleShot(true);
    robot.start();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), widget.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(widget.viewport(), &event);
    return chosen;
}

} // namespace

class ConsoleWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsKindsInColors_data();
    void showsKindsInColors();
    void keepsTheLastLines();
    void followsTheEndUnlessScrolledUp();
    void menuCopiesSelectsAndClears();
    void stopsListeningWhenDestroyed();
};

void ConsoleWidgetTest::showsKindsInColors_data() {
    const TestTable<int, QString> table("kind", "color");
    table.row("text", int(Brindle::ConsoleLineKind::Text), "text");
    table.row("remark", int(Brindle::ConsoleLineKind::Remark), "remark");
    table.row("error", int(Brindle::ConsoleLineKind::Error), "error");
}

void ConsoleWidgetTest::showsKindsInColors() {
    QFETCH(int, kind);
    QFETCH(QString, color);
    const ConsoleWidget widget(nullptr);
    const std::string text = "a <b>\xc3\xa9</b> & b";
    {
        const Quiet quiet;
        Brindle::console.print("before");
        Brindle::console.indent();
        if (kind == int(Brindle::ConsoleLineKind::Text))
            Brindle::console.print(text);
        else if (kind == int(Brindle::ConsoleLineKind::Remark))
            Brindle::console.remark(text);
        else
            Brindle::console.error(text);
        Brindle::console.unindent();
        Brindle::console.print("after");
    }
    QCOMPARE(widget.toPlainText(), "before\n  a <b>\u00e9</b> & b\nafter");
    const QTextBlock block = widget.document()->findBlockByNumber(1);
    QCOMPARE(block.begin().fragment().charFormat().foreground().color(), Brindle::theme.getColor(color.toStdString()));
    const QTextBlock last = widget.document()->lastBlock();
    QCOMPARE(last.begin().fragment().charFormat().foreground().color(), Brindle::theme.getColor("text"));
}

void ConsoleWidgetTest::keepsTheLastLines() {
    const ConsoleWidget widget(nullptr);
    const int count = ConsoleWidget::historyLength;
    print(1, count);
    QCOMPARE(widget.document()->firstBlock().text(), "line 1");
    print(count + 1, 5);
    QCOMPARE(widget.document()->blockCount(), count);
    QCOMPARE(widget.document()->firstBlock().text(), "line 6");
    QCOMPARE(widget.document()->lastBlock().text(), QStringLiteral("line %1").arg(count + 5));
}

void ConsoleWidgetTest::followsTheEndUnlessScrolledUp() {
    ConsoleWidget widget(nullptr);
    widget.resize(400, 120);
    widget.show();
    print(1, 200);
    QScrollBar* bar = widget.verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());

    QTest::keyClick(&widget, Qt::Key_PageUp);
    const int place = bar->value();
    QVERIFY(place < bar->maximum());
    print(201, 50);
    QCOMPARE(bar->value(), place);

    bar->setValue(bar->maximum());
    print(251, 50);
    QCOMPARE(bar->value(), bar->maximum());

    print(301, ConsoleWidget::historyLength);
    bar->setValue(bar->maximum() / 2);
    const auto lineOnTop = [&] { return widget.cursorForPosition(QPoint(5, 5)).block().text(); };
    const QString line = lineOnTop();
    print(1, 20);
    QCOMPARE(lineOnTop(), line); // although lines were dropped above it
}

void ConsoleWidgetTest::menuCopiesSelectsAndClears() {
    ConsoleWidget widget(nullptr);
    widget.show();
    QVERIFY2(!chooseFromMenu(widget, "Copy"), "nothing is selected");
    QVERIFY2(!chooseFromMenu(widget, "Clear"), "nothing is shown");
    print(1, 2);
    QVERIFY(chooseFromMenu(widget, "Select All"));
    QVERIFY(chooseFromMenu(widget, "Copy"));
    QCOMPARE(QApplication::clipboard()->text(), "line 1\nline 2");
    QVERIFY(chooseFromMenu(widget, "Clear"));
    print(3, 1);
    QCOMPARE(widget.toPlainText(), "line 3");
}

void ConsoleWidgetTest::stopsListeningWhenDestroyed() {
    auto doomed = std::make_unique<ConsoleWidget>(nullptr);
    const ConsoleWidget other(nullptr);
    print(1, 1);
    doomed.reset();
    print(2, 1);
    QCOMPARE(other.toPlainText(), "line 1\nline 2");
}

VELMORA_TEST_MAIN(ConsoleWidgetTest)
#include "ConsoleWidgetTest.moc"
