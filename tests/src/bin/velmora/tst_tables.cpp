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
#include <QAction>
#include <QClipboard>
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
    void countHidesRows();
    void editorsFollowTheOptions();
    void triggerCodes_data();
    void triggerCodes();
    void valueSets();
    void padIsChosenByMouse();
    void columnsAreFilled();
    void tabGoesThroughCells();
    void rowGoesWhileItIsEdited_data();
    void rowGoesWhileItIsEdited();
    void unsupportedValueStays();
    void refusedPartIsShown_data();
    void refusedPartIsShown();
    void sectionsAreInLine();
    void openSectionIsHighEnough();
    void tabPassesOverClosedSections();
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

void TablesTest::countHidesRows() {
    QStringList texts;
    for (int row = 0; row < 32; ++row)
        texts += QString::number(row);
    const auto verify = [&](const QString& name, const QString& count, int column, const auto& listed) {
        auto* view = table(name);
        const QAbstractItemModelTester tester(view->model());
        set({{QString("%1 %2").arg(name).arg(column), texts.join(',')}});
        const int most = editor<QSpinBox>(count)->maximum();
        for (const int shown : {3, 2, most, 1, editor<QSpinBox>(count)->minimum()}) {
            set({{count, QString::number(shown)}});
            QCOMPARE(view->model()->rowCount(), shown);
            QCOMPARE(view->getRowCount(), shown);
            QCOMPARE(listed(), texts.mid(0, shown));
        }
    };
    open("SER/DES");
    verify("LocationTableView/SER", "SERCount", 1, [this] { return locations("SER")->getLocationList(); });
    verify("LocationTableView/DES", "DESCount", 1, [this] { return locations("DES")->getLocationList(); });
    open("Scope");
    const auto* triggers = editor<Velmora::TriggerTableView>("TriggerTableView");
    verify("TriggerTableView", "TriggerCount", 2, [triggers] { return triggers->getTriggerValueList(); });
    open("Startup Scope");
    const auto* startup = editor<Velmora::StartupTriggerTableView>("StartupTriggerTableView");
    verify("StartupTriggerTableView", "TriggerCount", 2, [startup] { return startup->getTriggerValueList(); });
}

void TablesTest::editorsFollowTheOptions() {
    open("Scope");
    const auto* view = table("TriggerTableView");
    QAbstractItemDelegate* delegate = view->itemDelegate();
    const auto offered = [&](int column) {
        QWidget parent;
        const QWidget* editor = delegate->createEditor(&parent, {}, view->model()->index(0, column));
        const auto* combo = qobject_cast<const QComboBox*>(editor);
        QStringList items;
        for (int item = 0; combo && item < combo->count(); ++item)
            items += combo->itemText(item);
        return editor ? items.join(',') : QStringLiteral("none");
    };
    set("TriggerMode=Basic");
    QCOMPARE(offered(0), "none"); // the line's name
    QCOMPARE(offered(2), "0,1,Ignore");
    QCOMPARE(offered(3), "none");
    set("MultipleLevelTrigger=Enable");
    QCOMPARE(offered(3), "0,1,Ignore");
    QWidget parent;
    delegate->createEditor(&parent, {}, view->model()->index(0, 2));
    set("TriggerMode=Basic & Edges");
    QCOMPARE(offered(2), allValues);
    QCOMPARE(offered(3), allValues);
    QCOMPARE(view->rowHeight(0), 24);
    QLabel foreign;
    const QModelIndex cell = view->model()->index(0, 2);
    QVERIFY_EXCEPTION_THROWN(delegate->setEditorData(&foreign, cell), Brindle::InternalError);
    QVERIFY_EXCEPTION_THROWN(delegate->setModelData(&foreign, view->model(), cell), Brindle::InternalError);
    auto* ofLevels = parent.findChild<QComboBox*>();
    delegate->setEditorData(ofLevels, cell);
    set("TriggerTableView 2=0");
    delegate->setModelData(ofLevels, view->model(), cell); // by its text, not by its place among fewer items
    QCOMPARE(cell.data().toString(), QString("Ignore"));
}

void TablesTest::triggerCodes_data() {
    const TestTable<QString, QString, QString> table("mode", "values", "expected");
    table.row("basic", "Basic", "0,1,Ignore", R"(0 => "00", 1 => "01", 2 => "11")");
    table.row("edge in basic", "Basic", "1,Rising edge", "Unsupported value in basic trigger mode");
    table.row("edges", "Basic & Edges", allValues,
              R"(0 => "000", 1 => "001", 2 => "110", 3 => "100", 4 => "111", 5 => "010")");
    table.row("unknown", "Basic & Edges", "0,ignore", "Should not be here");
}

void TablesTest::triggerCodes() {
    QFETCH(QString, mode);
    QFETCH(QString, values);
    open("Scope");
    set("TriggerMode=" + mode);
    std::string found;
    try {
        found = editor<Velmora::ScopeLeaf>("ScopeLeaf")->getTriggerValueString(values.split(','));
    } catch (const Brindle::Error& error) {
        found = error.getMessage();
    }
    QTEST(QString::fromStdString(found), "expected");
    open("Startup Scope");
    QCOMPARE(editor<Velmora::StartupScopeLeaf>("StartupScopeLeaf")->getTriggerValueString({"1", "1", "0", "1"}),
             std::string(R"("1011")"));
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

void TablesTest::padIsChosenByMouse() {
    open("SER/DES");
    set("DESCount=2;BankNumber=11");
    auto* view = showTable(locations("DES"));
    const QRect cell = view->visualRect(view->model()->index(1, 1));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    auto* combo = view->viewport()->findChild<QComboBox*>();
    QVERIFY(combo);
    QCOMPARE(combo->geometry(), cell);
    QCOMPARE(combo->toolTip(), QStringLiteral("Pad of bank 11"));
    QCOMPARE(combo->currentIndex(), -1);
    QVERIFY(combo->view()->isVisible());
}

void TablesTest::columnsAreFilled() {
    open("SER/DES");
    set("SERCount=4;DESCount=2;LocationTableView/DES 1=01P;LocationTableView/SER 1=02N");
    auto* view = showTable(locations("SER"));
    const auto run = [view](const char* text) {
        for (QAction* action : view->actions()) {
            if (action->text().remove('&') == text)
                action->trigger();
        }
        return view->getLocationList().join(',');
    };
    QCOMPARE(run("Assign free pads in order"), "02N,01N,02P,03P");
    const auto frame = [this](const auto* table) {
        const QPoint corner = table->visualRect(table->model()->index(0, 1)).topLeft();
        return table->viewport()->grab().toImage().pixelColor(corner);
    };
    QVERIFY(frame(locations("DES")) != Brindle::theme.getColor("error"));
    set("LocationTableView/SER 1=01P"); // which a line in the other table has
    QCOMPARE(frame(locations("DES")), Brindle::theme.getColor("error"));
    QCOMPARE(run("Clear column"), ",,,");
    ConsoleRecorder recorder;
    QApplication::clipboard()->setText("04P\t7\r\n04N\n05P\n05N\n06P\n");
    QCOMPARE(run("Paste"), "04P,04N,05P,05N");
    QCOMPARE(view->getOutputDelayList().first(), "07");
    QApplication::clipboard()->setText("05P\n99P");
    QCOMPARE(run("Paste"), "04P,04N,05P,05N");
    QVERIFY(recorder.lines().first().startsWith("E: '99P' cannot be pasted, expected one of 01P, "));
    page().getForm()->getHistory().undo();
    QCOMPARE(view->getLocationList().join(','), ",,,");
}

void TablesTest::rowGoesWhileItIsEdited_data() {
    const TestTable<QString, QString, QString, int> table("ip", "name", "count", "column");
    table.row("delay", "SER/DES", "LocationTableView/SER", "SERCount=4", 2);
    table.row("first level", "Scope", "TriggerTableView", "TriggerCount=4;MultipleLevelTrigger=Enable", 3);
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

/// An edge in the basic mode, and a first level that is not asked for any more while its cell is open.
void TablesTest::unsupportedValueStays() {
    open("Scope");
    set("TriggerMode=Basic & Edges;TriggerTableView 2=Both edges;MultipleLevelTrigger=Enable");
    auto* view = showTable(table("TriggerTableView"));
    const QModelIndex value = view->model()->index(0, 2);
    QWidget parent;
    auto* first = qobject_cast<QComboBox*>(view->itemDelegate()->createEditor(&parent, {}, value.siblingAtColumn(3)));
    set("TriggerMode=Basic;MultipleLevelTrigger=Disable");
    QCOMPARE(view->viewport()->grab().toImage().pixelColor(view->visualRect(value).topLeft()),
             Brindle::theme.getColor("error"));
    QWidget* combo = view->itemDelegate()->createEditor(&parent, {}, value);
    view->itemDelegate()->setEditorData(combo, value);
    view->itemDelegate()->setModelData(combo, view->model(), value); // nothing was chosen
    QCOMPARE(value.data().toString(), QString("Both edges"));
    first->setCurrentText("1");
    view->itemDelegate()->setModelData(first, view->model(), value.siblingAtColumn(3));
    QCOMPARE(value.siblingAtColumn(3).data().toString(), QString("1"));
}

void TablesTest::refusedPartIsShown_data() {
    const TestTable<QString, QString, QByteArray, QString, QString> table("ip", "values", "printed", "part", "reason");
    const QString link = "Entity=top;Prefix=P;SER/TrainingValue=011;DES/TrainingValue=011;SERCount=2;LocationTableView/"
                         "SER 1=01P,01N;LocationTableView/DES 1=02P";
    table.row("check, also in two sections", "SER/DES", link + ";SER/PadType=LVCMOS_1.8V", "", "SER/PadType",
              "Pad type of SER and DES must have the same voltage!");
    table.row("check of a cell", "SER/DES", link + ";LocationTableView/SER 1=02P,03P", "", "LocationTableView/SER 0,1",
              "DES location '02P' is already used!");
    const QString filter = "Entity=fir;Coefficients=1,2,3,4;CoefficientWidth=8";
    table.row("coefficient", "Mac fir", filter + ";Coefficients=1,2,3,0x1F", "", "Coefficients",
              "Invalid coefficient (coefficient: 0x1F)");
    table.row("large coefficient", "Systolic", filter + ";Coefficients=1,2,300", "", "Coefficients",
              "Value too high for specified width (value: 300, bitCount: 8)");
    table.row("character", "SER/DES", link + ";DES/TrainingValue=0'1", "", "DES/TrainingValue",
              "Unsupported character in value (value: \"0'1\")");
    table.row("edge", "Scope", "Entity=la;TriggerCount=3;TriggerTableView 2=1,Rising edge", "", "TriggerTableView 1,2",
              "Unsupported value in basic trigger mode (input: Trig1, value: Rising edge)");
    for (const char* told : {"Coefficient width: 8|CoefficientWidth", "Coefficients: 4|Coefficients"}) {
        const QString reason = QString(told).section('|', 0, 0);
        table.row(told, "Mac fir", filter, reason.toUtf8(), QString(told).section('|', 1), reason);
    }
    for (const char* told : {"Training value (DES parameters) \"x\" is bad|DES/TrainingValue",
                             "Output delay line (SER parameters) of line 1 is bad|LocationTableView/SER 1,2",
                             "Location (DES parameters) is bad|LocationTableView/DES"}) {
        const QString reason = QString(told).section('|', 0, 0);
        table.row(told, "SER/DES", link, reason.toUtf8(), QString(told).section('|', 1), reason);
    }
}

/// The first of them has the focus and can be seen, also after the window has become active again.
void TablesTest::refusedPartIsShown() {
    QFETCH(QString, ip);
    QFETCH(QString, values);
    QFETCH(QByteArray, printed);
    QFETCH(QString, part);
    QSettings().setValue("animations", "Always");
    open(ip, "def generate(argDict):\n  if '" + printed + "':\n    printError('" + printed + "')\n  return ''\n");
    set(values);
    page().resize(600, 500);
    page().show();
    const auto activate = [](QWidget& window) {
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    };
    QVERIFY(activate(page()));
    auto* button = editor<QPushButton>("Generate");
    for (const QString way : {"mouse", "keyboard", "shortcut"}) {
        page().findChild<QScrollArea*>()->ensureWidgetVisible(button);
        QWidget dialog; // whose end brings the window back
        dialog.show();
        if (way == "mouse") {
            press("Generate");
        } else if (way == "keyboard") {
            button->setFocus();
            QTest::keyPress(button, Qt::Key_Space);
        } else {
            QVERIFY(activate(page()));
            QTest::keyClick(page().windowHandle(), Qt::Key_G, Qt::AltModifier);
        }
        QVERIFY(activate(dialog));
        dialog.close();
        QVERIFY(activate(page()));
        auto* field = editor<QWidget>(part.section(' ', 0, 0));
        QTRY_COMPARE(QApplication::focusWidget(), field);
        QTRY_VERIFY(!field->visibleRegion().isEmpty());
        QTest::keyRelease(button, Qt::Key_Space);
        const auto* view = qobject_cast<QTableView*>(field);
        if (part.contains(' ')) {
            const QModelIndex cell = view->currentIndex();
            QCOMPARE(QString("%1,%2").arg(cell.row()).arg(cell.column()), part.section(' ', 1));
            QTRY_VERIFY(view->viewport()->visibleRegion().contains(view->visualRect(cell).center()));
            QTEST(cell.data(Velmora::LineTableModel::ProblemRole).toString(), "reason");
        } else {
            QTEST(field->toolTip(), "reason");
        }
    }
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

/// Also when it was built without the style.
void TablesTest::openSectionIsHighEnough() {
    Brindle::theme.apply(*qApp);
    {
        const Velmora::StyleSheetPause pause; // as when the window is built
        open("SER/DES");
    }
    const QWidget* body = showTable(locations("SER"))->parentWidget();
    QVERIFY(body->maximumHeight() >= body->layout()->sizeHint().height());
    qApp->setStyleSheet(QString());
}

VELMORA_TEST_MAIN(TablesTest)
#include "tst_tables.moc"
