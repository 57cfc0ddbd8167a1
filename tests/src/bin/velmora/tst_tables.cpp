#include <support/Contrast.h>
#include <support/FormFixture.h>
#include <support/TestMain.h>
#include <support/TestTable.h>

#include <velmora/ips/scopes/ScopeLeaf.h>
#include <velmora/ips/scopes/StartupScopeLeaf.h>
#include <velmora/ips/scopes/StartupTriggerTableView.h>
#include <velmora/ips/scopes/TriggerTableView.h>
#include <velmora/ips/serdes/LocationTableView.h>
#include <velmora/widgets/FoldWidget.h>
#include <velmora/widgets/StyleSheetPause.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>

namespace {

const QString allValues = "0,1,Rising edge,Falling edge,Both edges,Ignore";

/// Types a text where the focus is, its first character into the table, and ends it with a key.
void type(const QString& text, Qt::Key end) {
    QTest::keyClicks(QApplication::focusWidget(), text.left(1));
    QTest::keyClicks(QApplication::focusWidget(), text.mid(1));
    QTest::keyClick(QApplication::focusWidget(), end);
}

} // namespace

/// The tables in which the lines of the SER/DES and of the scopes are filled in.
class TablesTest : public QObject, private FormFixture {
    Q_OBJECT

private:
    Velmora::LineTableView* table(const QString& name) const { return editor<Velmora::LineTableView>(name); }
    Velmora::LocationTableView* locations(const QString& mode) const {
        return editor<Velmora::LocationTableView>("LocationTableView/" + mode);
    }
    /// Makes the table's first field current, with all sections open.
    template <class Table>
    Table* showTable(Table* view) const {
        showUnfolded(QSize(590, 900));
        view->setFocus();
        view->setCurrentIndex(view->model()->index(0, 1));
        return view;
    }
    QString argument(const QString& key) const {
        return statement().section("'%%" + key + "%%': '", 1).section('\'', 0, 0);
    }

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void tablesTakeWhatCouldBeEntered_data();
    void tablesTakeWhatCouldBeEntered();
    void countHidesRows_data();
    void countHidesRows();
    void editors_data();
    void editors();
    void valueStrings_data();
    void valueStrings();
    void valueSets();
    void leftEdgeStays();
    void traceLinesAreFilledInByKeyboard();
    void locationsArePlacedByKeyboard();
    void tabGoesThroughCells();
    void locationsArePlacedByMouse();
    void rowGoesWhileItIsEdited_data();
    void rowGoesWhileItIsEdited();
    void optionGoesWhileItsCellIsEdited();
    void refusedPartComesIntoView_data();
    void refusedPartComesIntoView();
    void sectionsAreInLine();
    void tabPassesOverClosedSections();
    void openSectionIsLegible();
};

void TablesTest::tablesTakeWhatCouldBeEntered_data() {
    const TestTable<QString, QString, QStringList, QStringList> table("ip", "name", "stored", "cells");
    table.row("locations", "SER/DES", "LocationTableView/SER", {"other|15N|63", "SER1|16P|64", "SER2||07", "SER3"},
              {"SER0|15N|63", "SER1|03N|0", "SER2||0", "SER3|04N|0"});
    const QStringList rows{"other|n|Both edges|0", "Trig1|m|ignore|2", "Trig2|l|1", "Trig3"};
    table.row("trigger values", "Scope", "TriggerTableView", rows,
              {"Trig0|n|Both edges|0", "Trig1|m|Ignore|Ignore", "Trig2|l|1|Ignore", "Trig3||Ignore|Ignore"});
    table.row("startup values", "Startup Scope", "StartupTriggerTableView", rows,
              {"Trig0|n|0", "Trig1|m|0", "Trig2|l|1", "Trig3||0"});
}

void TablesTest::tablesTakeWhatCouldBeEntered() {
    QFETCH(QString, ip);
    QFETCH(QString, name);
    QFETCH(QStringList, stored);
    open(ip);
    if (ip == "SER/DES")
        set("LocationTableView/SER 1=03P,03N,04P,04N");
    for (int row = 0; row < stored.size(); ++row)
        QSettings().setValue(QString("%1/%2/%3").arg(group(), name).arg(row), stored.at(row).split('|'));
    table(name)->load();
    QTEST(FormText::cellsOf(*table(name), 4), "cells");
}

void TablesTest::countHidesRows_data() {
    const TestTable<QString, QString, QString, int, int> table("ip", "name", "count", "column", "most");
    table.row("SER", "SER/DES", "LocationTableView/SER", "SERCount", 1, 30);
    table.row("DES", "SER/DES", "LocationTableView/DES", "DESCount", 1, 30);
    table.row("scope", "Scope", "TriggerTableView", "TriggerCount", 2, 32);
    table.row("startup scope", "Startup Scope", "StartupTriggerTableView", "TriggerCount", 2, 4);
}

void TablesTest::countHidesRows() {
    QFETCH(QString, ip);
    QFETCH(QString, name);
    QFETCH(QString, count);
    QFETCH(int, column);
    QFETCH(int, most);
    open(ip);
    auto* view = table(name);
    const QAbstractItemModelTester tester(view->model());
    QStringList texts;
    for (int row = 0; row < 32; ++row)
        texts += QString::number(row);
    set({{QString("%1 %2").arg(name).arg(column), texts.join(',')}});
    const auto listed = [&] {
        if (auto* location = qobject_cast<Velmora::LocationTableView*>(view))
            return location->getLocationList();
        if (auto* trigger = qobject_cast<Velmora::TriggerTableView*>(view))
            return trigger->getTriggerValueList();
        return editor<Velmora::StartupTriggerTableView>(name)->getTriggerValueList();
    };
    for (const int shown : {3, 2, most, 1, 0}) {
        set({{count, QString::number(shown)}});
        const int rows = ip == "SER/DES" ? shown : std::max(shown, 1);
        QCOMPARE(view->model()->rowCount(), rows);
        QCOMPARE(view->getRowCount(), rows);
        QCOMPARE(listed(), texts.mid(0, rows));
    }
    if (auto* trigger = editor<Velmora::TriggerTableView>("TriggerTableView"))
        QCOMPARE(trigger->getFirstTriggerValueList(), QStringList("Ignore"));
}

void TablesTest::editors_data() {
    const TestTable<QString, QString, QString, QStringList, QStringList> table("ip", "name", "values", "headers",
                                                                               "ranges"); // headers: from the 2nd on
    const QString pads = getPads().join(',');
    const QStringList triggerHeaders{"Alias", "Trigger value", "First level trigger value"};
    const QString edges = "TriggerMode=Basic & Edges";
    const QString levels = ";MultipleLevelTrigger=Enable";
    table.row("SER", "SER/DES", "LocationTableView/SER", "", {"Location", "Output delay line"}, {pads, "0..63"});
    table.row("DES", "SER/DES", "LocationTableView/DES", "", {"Location"}, {pads});
    table.row("levels", "Scope", "TriggerTableView", "TriggerMode=Basic", triggerHeaders, {"", "0,1,Ignore", "none"});
    table.row("two levels", "Scope", "TriggerTableView", "TriggerMode=Basic" + levels, triggerHeaders,
              {"", "0,1,Ignore", "0,1,Ignore"});
    table.row("edges", "Scope", "TriggerTableView", edges, triggerHeaders, {"", allValues, "none"});
    table.row("two levels with edges", "Scope", "TriggerTableView", edges + levels, triggerHeaders,
              {"", allValues, allValues});
    table.row("startup scope", "Startup Scope", "StartupTriggerTableView", "", {"Alias", "Trigger value"}, {"", "0,1"});
}

void TablesTest::editors() {
    QFETCH(QString, ip);
    QFETCH(QString, name);
    QFETCH(QString, values);
    QFETCH(QStringList, headers);
    QFETCH(QStringList, ranges);
    open(ip);
    set(values);
    QWidget parent;
    QAbstractItemModel* model = table(name)->model();
    QAbstractItemDelegate* delegate = table(name)->itemDelegate();
    const QModelIndex lineName = model->index(0, 0);
    QVERIFY(!delegate->createEditor(&parent, {}, lineName));
    QVERIFY(!lineName.flags().testFlag(Qt::ItemIsEditable));
    QCOMPARE(table(name)->rowHeight(0), 24);
    QLabel foreign;
    QStringList foundHeaders;
    QStringList foundRanges;
    for (int column = 1; column < model->columnCount(); ++column) {
        foundHeaders += model->headerData(column, Qt::Horizontal).toString();
        const QModelIndex cell = lineName.siblingAtColumn(column);
        QWidget* editor = delegate->createEditor(&parent, {}, cell);
        foundRanges += editor ? FormText::rangeOf(editor) : "none";
        if (!editor)
            continue;
        for (const char* text : {"03P", "1", "0"}) { // what the editor takes goes there and back
            set({{QString("%1 %2").arg(name).arg(column), text}});
            const auto shownText = [&] { return table(name)->getModel()->getEditor(column)->getText(editor); };
            const QString shown = shownText();
            delegate->setEditorData(editor, cell);
            if (shownText() != text)
                continue;
            set({{QString("%1 %2").arg(name).arg(column), shown}});
            delegate->setModelData(editor, model, cell);
            QCOMPARE(cell.data().toString(), text);
        }
        QVERIFY_EXCEPTION_THROWN(delegate->setEditorData(&foreign, cell), Brindle::InternalError);
        QVERIFY_EXCEPTION_THROWN(delegate->setModelData(&foreign, model, cell), Brindle::InternalError);
    }
    QCOMPARE(foundHeaders, headers);
    QCOMPARE(foundRanges, ranges);
}

void TablesTest::valueStrings_data() {
    const TestTable<QString, QString, QString> table("mode", "values", "expected");
    const QString unsupported = "Unsupported value in basic trigger mode";
    const auto row = [&table](const QString& mode, const QString& values, const QString& expected) {
        table.row(qPrintable(mode + ": " + values), mode, values, expected);
    };
    row("Basic", "", "");
    row("Basic", "0,1,Ignore", R"(0 => "00", 1 => "01", 2 => "11")");
    row("Basic", "1,Rising edge", unsupported);
    row("Basic", "Falling edge", unsupported);
    row("Basic", "Both edges", unsupported);
    row("Basic & Edges", "", "");
    row("Basic & Edges", allValues, R"(0 => "000", 1 => "001", 2 => "110", 3 => "100", 4 => "111", 5 => "010")");
    row("Basic & Edges", "0,ignore", "Should not be here");
    row("startup", "", R"("")");
    row("startup", "1,0,0", R"("001")");
    row("startup", "1,1,0,1", R"("1011")");
}

void TablesTest::valueStrings() {
    QFETCH(QString, mode);
    QFETCH(QString, values);
    const QStringList list = values.split(',', Qt::SkipEmptyParts);
    std::string found;
    open(mode == "startup" ? "Startup Scope" : "Scope");
    try {
        if (auto* scope = editor<Velmora::ScopeLeaf>("ScopeLeaf")) {
            set("TriggerMode=" + mode);
            found = scope->getTriggerValueString(list);
        } else {
            found = editor<Velmora::StartupScopeLeaf>("StartupScopeLeaf")->getTriggerValueString(list);
        }
    } catch (const Brindle::Error& error) {
        found = error.getMessage();
        QCOMPARE(dynamic_cast<const Brindle::InternalError*>(&error) != nullptr, mode != "Basic");
    }
    QTEST(QString::fromStdString(found), "expected");
}

void TablesTest::valueSets() {
    open("Scope");
    set("TriggerMode=Basic;MultipleLevelTrigger=Enable;TriggerCount=2;TriggerTableView 2=1,Ignore;TriggerTableView "
        "3=0");
    const QString noEdges = "(others => \"000\")";
    QCOMPARE(argument("BASIC_TRIGGER_VALUES"), R"(0 => "01", 1 => "11")");
    QCOMPARE(argument("ADVANCED_TRIGGER_VALUES"), R"(0 => "00", 1 => "11")");
    QCOMPARE(argument("EDGE_TRIGGER_VALUES"), noEdges);
    QCOMPARE(argument("ADVANCED_EDGE_TRIGGER_VALUES"), noEdges);
}

void TablesTest::leftEdgeStays() {
    open("Scope");
    set("TriggerMode=Basic & Edges;TriggerTableView 2=Both edges");
    auto* view = showTable(table("TriggerTableView"));
    const QImage known = view->grab().toImage();
    set("TriggerMode=Basic");
    QVERIFY(view->grab().toImage() != known); // the edge stands out
    const QModelIndex value = view->model()->index(0, 2);
    QWidget parent;
    QWidget* combo = view->itemDelegate()->createEditor(&parent, {}, value);
    view->itemDelegate()->setEditorData(combo, value);
    view->itemDelegate()->setModelData(combo, view->model(), value); // nothing was chosen
    QCOMPARE(value.data().toString(), QString("Both edges"));
}

void TablesTest::traceLinesAreFilledInByKeyboard() {
    open("Scope");
    set("TriggerCount=32");
    QCOMPARE(showTable(table("TriggerTableView"))->horizontalScrollBar()->maximum(), 0);
    type("clk", Qt::Key_Tab);
    type("1", Qt::Key_Tab); // over the first level, which is not asked for, and the name of the next line
    type("rst_n", Qt::Key_Tab);
    type("0", Qt::Key_Return);
    QCOMPARE(cells(2), QStringList({"Trig0|clk|1|Ignore", "Trig1|rst_n|0|Ignore"}));
}

void TablesTest::locationsArePlacedByKeyboard() {
    open("SER/DES");
    set("SERCount=30");
    auto* view = showTable(locations("SER"));
    for (const QString& pad : getPads())
        type(pad, Qt::Key_Return);
    QCOMPARE(view->getLocationList(), getPads());
    view->setCurrentIndex(view->model()->index(0, 2));
    QStringList typed;
    for (int delay = 34; delay < 64; ++delay) {
        typed += QString::number(delay);
        type(typed.last(), Qt::Key_Return);
    }
    QCOMPARE(view->getOutputDelayList(), typed);
}

void TablesTest::tabGoesThroughCells() {
    open("SER/DES");
    set("SERCount=2");
    auto* view = showTable(locations("SER"));
    type("03P", Qt::Key_Tab);
    type("7", Qt::Key_Tab); // over the name of the next line
    type("03N", Qt::Key_Backtab);
    QCOMPARE(view->currentIndex(), view->model()->index(0, 2));
    for (const auto key : {Qt::Key_Up, Qt::Key_Tab, Qt::Key_Tab})
        QTest::keyClick(QApplication::focusWidget(), key);
    type("99", Qt::Key_Tab); // beyond the range; there is no further cell
    QCOMPARE(view->currentIndex(), view->model()->index(1, 2));
    QCOMPARE(view->getLocationList(), QStringList({"03P", "03N"}));
    QCOMPARE(view->getOutputDelayList(), QStringList({"08", "09"}));
}

void TablesTest::locationsArePlacedByMouse() {
    open("SER/DES");
    set("DESCount=2;BankNumber=11");
    auto* view = showTable(locations("DES"));
    const QPoint cell = view->visualRect(view->model()->index(1, 1)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, cell);
    auto* combo = view->viewport()->findChild<QComboBox*>();
    QVERIFY(combo);
    QCOMPARE(combo->geometry(), view->visualRect(view->model()->index(1, 1)));
    QCOMPARE(combo->toolTip(), QStringLiteral("Pad of bank 11"));
    QCOMPARE(combo->currentIndex(), -1);
    combo->showPopup();
    const QModelIndex pad = combo->model()->index(3, 0);
    combo->view()->scrollTo(pad);
    QTest::mouseMove(combo->view()->viewport(), combo->view()->visualRect(pad).center());
    QTest::mouseClick(combo->view()->viewport(), Qt::LeftButton, {}, combo->view()->visualRect(pad).center());
    QTRY_COMPARE(view->getLocationList(), QStringList({"", "02N"}));
}

void TablesTest::rowGoesWhileItIsEdited_data() {
    const TestTable<QString, QString, QString, int> table("ip", "name", "count", "column");
    table.row("location", "SER/DES", "LocationTableView/SER", "SERCount=4", 1);
    table.row("delay", "SER/DES", "LocationTableView/SER", "SERCount=4", 2);
    table.row("trigger value", "Scope", "TriggerTableView", "TriggerCount=4;MultipleLevelTrigger=Enable", 2);
    table.row("first level", "Scope", "TriggerTableView", "TriggerCount=4;MultipleLevelTrigger=Enable", 3);
    table.row("startup value", "Startup Scope", "StartupTriggerTableView", "TriggerCount=4", 2);
}

/// By a configuration that is dropped on the window, or by the shortcut of Reset: the focus stays in the cell.
void TablesTest::rowGoesWhileItIsEdited() {
    QFETCH(QString, ip);
    QFETCH(QString, name);
    QFETCH(QString, count);
    QFETCH(int, column);
    open(ip);
    auto* view = showTable(table(name));
    const QStringList initial = cells();
    const auto edit = [&] {
        set(count);
        view->setCurrentIndex(view->model()->index(3, column));
        view->edit(view->currentIndex());
        QWidget* cell = view->indexWidget(view->currentIndex());
        if (auto* combo = qobject_cast<QComboBox*>(cell))
            combo->setCurrentIndex(1);
        else
            QTest::keyClicks(cell, "7");
        return cell && view->model()->rowCount() == 4;
    };
    QVERIFY(edit());
    set(count.section('=', 0, 0) + "=1");
    QCOMPARE(view->model()->rowCount(), 1);
    const QStringList typed = cells();
    QVERIFY(typed.at(3) != initial.at(3));

    QVERIFY(edit());
    QTest::keyClick(page().windowHandle(), Qt::Key_R, Qt::AltModifier);
    QCOMPARE(view->model()->rowCount(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(cells(), initial);
}

void TablesTest::optionGoesWhileItsCellIsEdited() {
    open("Scope");
    set("MultipleLevelTrigger=Enable");
    const QAbstractItemView* view = table("TriggerTableView");
    const QModelIndex firstLevel = view->model()->index(0, 3);
    QWidget parent;
    auto* combo = qobject_cast<QComboBox*>(view->itemDelegate()->createEditor(&parent, {}, firstLevel));
    QVERIFY(combo);
    set("MultipleLevelTrigger=Disable");
    view->itemDelegate()->setEditorData(combo, firstLevel);
    combo->setCurrentText("1");
    view->itemDelegate()->setModelData(combo, view->model(), firstLevel);
    QCOMPARE(firstLevel.data().toString(), QString("1"));
}

void TablesTest::refusedPartComesIntoView_data() {
    const TestTable<QString, QString, QString> table("animations", "values", "refused");
    table.row("field", "Never", "Entity=top;Prefix=P;DES/TrainingValue=01", "DES/TrainingValue");
    table.row("field, animated", "Always", "Entity=top;Prefix=P;DES/TrainingValue=01", "DES/TrainingValue");
    for (const char* animations : {"Never", "Always"}) {
        table.row(animations, animations, "Entity=top;Prefix=P;DES/TrainingValue=011;SER/PadType=LVCMOS_1.8V",
                  "SER/PadType"); // the first of two
    }
    table.row("cell", "Always", "Entity=top;Prefix=P;DES/TrainingValue=011", "LocationTableView/SER");
}

void TablesTest::refusedPartComesIntoView() {
    QFETCH(QString, animations);
    QFETCH(QString, values);
    QFETCH(QString, refused);
    QSettings().setValue("animations", animations);
    open("SER/DES");
    set("SER/TrainingValue=011;" + values);
    page().resize(600, 500);
    page().show();
    for (auto* ancestor = editor<QWidget>("SER/PadType"); ancestor; ancestor = ancestor->parentWidget()) {
        if (auto* section = qobject_cast<Velmora::FoldWidget*>(ancestor))
            section->open(); // that of the DES is still closed
    }
    page().findChild<QScrollArea*>()->ensureWidgetVisible(editor<QPushButton>("Reset"));
    press("Generate");
    auto* part = editor<QWidget>(refused);
    QTRY_VERIFY(!part->visibleRegion().isEmpty());
    QTest::qWait(300); // longer than a section takes to open
    QVERIFY(!part->visibleRegion().isEmpty());
}

/// Also where a label is wider than its share.
void TablesTest::sectionsAreInLine() {
    for (const char* ip : {"SER/DES", "Scope", "Startup Scope"}) {
        open(ip);
        showUnfolded(QSize(560, 900));
        QMap<int, QStringList> labels; // by the place of the editor
        for (const auto* label : page().findChildren<QLabel*>()) {
            if (label->buddy() && form()->isAncestorOf(label))
                labels[label->buddy()->mapTo(form(), QPoint()).x()] += label->text();
        }
        QVERIFY2(labels.size() == 1, qPrintable(labels.last().join(", ")));
    }
}

void TablesTest::tabPassesOverClosedSections() {
    open("SER/DES");
    page().show();
    QVERIFY(QTest::qWaitForWindowActive(&page()));
    editor<QWidget>("Entity")->setFocus();
    QStringList walk;
    do {
        walk += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (walk.last() != "Generate" && walk.size() < 20);
    QCOMPARE(walk, QStringList({"Entity", "", "", "", "Reset", "Generate"})); // titles have no name
}

void TablesTest::openSectionIsLegible() {
    for (const Brindle::Theme& theme : Brindle::Theme::getThemes()) {
        Brindle::theme = theme;
        theme.apply(*qApp);
        {
            const Velmora::StyleSheetPause pause; // as when the window is built
            open("SER/DES");
        }
        const QWidget* body = showTable(locations("SER"))->parentWidget();
        QVERIFY(body->maximumHeight() >= body->layout()->sizeHint().height());
        const QImage title = body->parentWidget()->findChild<QToolButton*>()->grab().toImage();
        QColor darkest = Qt::white;
        QColor lightest = Qt::black;
        const auto isDarker = [](const QColor& one, const QColor& other) {
            return Contrast::luminanceOf(one) < Contrast::luminanceOf(other);
        };
        for (int x = title.width() / 4; x < title.width(); ++x) { // the arrow stands to the left
            for (int y = 0; y < title.height(); ++y) {
                darkest = std::min(darkest, title.pixelColor(x, y), isDarker);
                lightest = std::max(lightest, title.pixelColor(x, y), isDarker);
            }
        }
        QVERIFY2(Contrast::between(lightest, darkest) >= Contrast::legibleText, qPrintable(theme.getName()));
    }
    Brindle::theme = Brindle::Theme::Light;
    Brindle::theme.apply(*qApp);
}

VELMORA_TEST_MAIN(TablesTest)
#include "tst_tables.moc"
