#include <support/Captured.h>
#include <support/TestMain.h>

#include <Quillon/ConsoleWidget.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/Theme.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include <iostream>
#include <memory>

using Quillon::ConsoleWidget;

namespace {

void print(int from, int count) {
    const Captured output(std::cout);
    for (int number = from; number < from + count; ++number)
        Brindle::console.print("line " + std::to_string(number));
}

} // namespace

class ConsoleWidgetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsKindsInColors();
    void followsTheEndUnlessScrolledUp();
    void menuCopiesSelectsAndClears();
    void stopsListeningWhenDestroyed();
};

void ConsoleWidgetTest::showsKindsInColors() {
    const ConsoleWidget widget(nullptr);
    const Captured output(std::cout);
    const Captured errors(std::cerr);
    Brindle::console.error("a <b>\xc3\xa9</b> & b");
    Brindle::console.indent();
    Brindle::console.remark("c");
    Brindle::console.unindent();
    Brindle::console.print("d");
    Brindle::console.printFailure("e");
    Brindle::console.separate();
    Brindle::console.separate();
    Brindle::console.print("f");
    QCOMPARE(widget.toPlainText(), "a <b>\u00e9</b> & b\n  c\nd\ne\n\nf");
    int line = 0;
    for (const char* color : {"error", "remark", "text", "error"}) {
        const QTextBlock block = widget.document()->findBlockByNumber(line++);
        QCOMPARE(block.begin().fragment().charFormat().foreground().color(), Brindle::theme.getColor(color));
    }
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
    widget.resize(400, 60);
    QCOMPARE(bar->value(), bar->maximum());

    bar->setValue(0);
    {
        const Captured errors(std::cerr);
        Brindle::console.error("error");
    }
    QCOMPARE(bar->value(), bar->maximum());

    print(301, ConsoleWidget::historyLength);
    bar->setValue(bar->maximum() / 2);
    const auto lineOnTop = [&] { return widget.cursorForPosition(QPoint(5, 5)).block().text(); };
    const QString line = lineOnTop();
    print(1, 20);
    QCOMPARE(lineOnTop(), line); // although lines were dropped above it
    QCOMPARE(widget.document()->blockCount(), ConsoleWidget::historyLength);
}

void ConsoleWidgetTest::menuCopiesSelectsAndClears() {
    ConsoleWidget widget(nullptr);
    const QList<QAction*> actions = widget.actions(); // the context menu
    QCOMPARE(actions.size(), 3);
    QVERIFY2(!actions.at(0)->isEnabled() && !actions.at(2)->isEnabled(), "nothing is selected or shown");
    print(1, 2);
    actions.at(1)->trigger();
    QVERIFY(actions.at(0)->isEnabled());
    actions.at(0)->trigger();
    QCOMPARE(QApplication::clipboard()->text(), "line 1\nline 2");
    QVERIFY(actions.at(2)->isEnabled());
    actions.at(2)->trigger();
    QCOMPARE(widget.toPlainText(), QString());
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
