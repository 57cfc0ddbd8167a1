#include <support/ConsoleRecorder.h>
#include <support/FormText.h>
#include <support/PathDialogs.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/configuration/ConfigurationFile.h>
#include <velmora/form/Form.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/window/Folio.h>
#include <velmora/window/IPTreeView.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/widgets/Theme.h>

#include <QAction>
#include <QDialog>
#include <QDir>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QToolButton>
#include <QUrl>
#include <QWindow>

#include <memory>

using Velmora::Folio;
using Velmora::IPLeaf;
using Velmora::MainWindow;

namespace {

const QString accepted = QStringLiteral("accepted"); // of a drag

QByteArray example(const QString& name) {
    return readFile(QString(VELMORA_EXAMPLES) + "/" + name + ".velmora");
}

QByteArray contentOf(const IPLeaf& leaf) {
    return QByteArray::fromStdString(leaf.getConfiguration().getContent());
}

IPLeaf* findLeaf(const std::string& name) {
    for (IPLeaf* leaf : Velmora::ipHandler->getIPLeaves()) {
        if (leaf->getName() == name)
            return leaf;
    }
    return nullptr;
}

QString drag(QObject* target, const QMimeData& data, bool drops = true) {
    const QPoint place(600, 300);
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return QString();
    if (drops) {
        QDropEvent drop(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(target, &drop);
        if (drop.dropAction() != Qt::CopyAction)
            return QStringLiteral("moved");
    }
    return accepted;
}

QString dropFile(QObject* target, const QString& filename) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(filename)});
    return drag(target, data);
}

} // namespace

/// What the window does with configurations, and how the marks of checks look.
class WindowTest : public QObject {
    Q_OBJECT

private:
    /// The window with the shipped catalogue.
    void openWindow() {
        qputenv("ORVANE_PREFIX", VELMORA_PREFIX);
        _window = std::make_unique<MainWindow>();
    }
    Folio* folio() const { return _window->findChild<Folio*>(); }
    void showIP(const std::string& name) const { folio()->showIP(findLeaf(name)); }
    IPLeaf* shownIP() const { return folio()->getShownIP(); }
    QString treeItem() const { return folio()->findChild<Velmora::IPTreeView*>()->currentIndex().data().toString(); }
    void search(const QString& text) const { folio()->findChild<QLineEdit*>("searchEdit")->setText(text); }
    void trigger(const char* action) const { _window->findChild<QAction*>(action)->trigger(); }
    static void press(const QWidget* page, const char* button) {
        QTest::mousePress(page->findChild<QPushButton*>(button), Qt::LeftButton);
    }
    void drop(const QString& name, const QByteArray& content) const {
        dropFile(_window->windowHandle(), _prefix->write(name, content));
    }
    QTableView* editCell(const QString& text);

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<MainWindow> _window;
    PathDialogs _dialogs;

private Q_SLOTS:
    void init();
    void cleanup() {
        _window.reset();
        _prefix.reset();
    }

    void marksAreDrawn_data();
    void marksAreDrawn();
    void menu();
    void everyExampleGoesThrough_data();
    void everyExampleGoesThrough();
    void cancelledDialogsDoNothing();
    void refusedFilesChangeNothing_data();
    void refusedFilesChangeNothing();
    void proposedNames();
    void saveTakesTheEditedCell();
    void loadEndsTheCellEdit();
    void settingsStayAsTheyWere();
    void dropReachesEveryPlace();
    void droppedFilesInTurn();
    void uidTellsNamesakesApart();
    void otherDragsAreLeftAlone();
};

void WindowTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _dialogs.answer = QStringLiteral("out.vhd");
}

void WindowTest::marksAreDrawn_data() {
    const TestTable<QString, QString, QString> table("ip", "values", "name");
    table.row("line edit", "Mac fir", "Entity=", "Entity");
    table.row("text edit", "Mac fir", "Entity=x;Coefficients=", "Coefficients");
    table.row("spin box", "Mac fir", "Entity=x;Coefficients=1,2,3;ToBeTruncated=50", "ToBeTruncated");
    table.row("combo box in a closed section", "SER/DES",
              "Entity=x;Prefix=p;SER/TrainingValue=101;DES/TrainingValue=101;SER/PadType=LVCMOS_1.8V", "SER/PadType");
    table.row("cell in a closed section", "SER/DES",
              "Entity=x;Prefix=p;SER/TrainingValue=101;DES/TrainingValue=101;SERCount=2", "LocationTableView/SER");
}

void WindowTest::marksAreDrawn() {
    QFETCH(QString, ip);
    QFETCH(QString, values);
    QFETCH(QString, name);
    QSettings().setValue("animations", "Never");
    const auto leaf = std::make_unique<IPLeaf>(_prefix->addKnownIP(ip, "").toStdString());
    FormText::write(*leaf->getForm(), values);
    leaf->resize(900, 1500);
    leaf->show();
    QVERIFY(QTest::qWaitForWindowActive(leaf.get()));
    auto* editor = leaf->findChild<QWidget*>(name);
    for (const Brindle::Theme theme : {Brindle::Theme::Dark, Brindle::Theme::Light}) {
        theme.apply(*qApp);
        const auto errorDots = [&] {
            const QImage image = editor->grab().toImage();
            int count = 0;
            for (int x = 0; x < image.width(); ++x) {
                for (int y = 0; y < image.height(); ++y)
                    count += image.pixelColor(x, y) == Brindle::theme.getColor("error");
            }
            return count;
        };
        Brindle::theme = theme; // which the cells ask
        const_cast<Velmora::Form*>(leaf->getForm())->getMark().clear();
        leaf->findChild<QPushButton*>("Reset")->setFocus();
        QCOMPARE(errorDots(), 0);
        QTest::mousePress(leaf->findChild<QPushButton*>("Generate"), Qt::LeftButton);
        QVERIFY(editor->isVisible());
        QTRY_VERIFY(errorDots() > 100); // once its section is open
        editor->setFocus();
        QVERIFY(editor->hasFocus());
        QVERIFY(errorDots() > 100);
    }
}

void WindowTest::menu() {
    openWindow();
    const auto enabled = [this] {
        return _window->findChild<QAction*>("loadConfiguration")->isEnabled() &&
               _window->findChild<QAction*>("saveConfiguration")->isEnabled();
    };
    QVERIFY(!enabled()); // the About page
    folio()->raiseLeaf(0);
    QVERIFY(enabled());
    folio()->raiseLeaf(2);
    QVERIFY(!enabled());
    QStringList entries;
    for (const QAction* action : _window->findChild<QMenu*>("fileMenu")->actions())
        entries += action->text() + " " + action->shortcut().toString();
    QCOMPARE(entries,
             QStringList({"&Load configuration... Ctrl+O", "&Save configuration... Ctrl+S", " ", "&Quit Ctrl+Q"}));
    trigger("quit");
    QVERIFY(!_window->isVisible());
    QVERIFY(QSettings().contains("geometry")); // as when it is closed otherwise
    _window.reset();

    qputenv("ORVANE_PREFIX", QFile::encodeName(_prefix->path()));
    _prefix->addBridge("");
    _prefix->addIP("Other/any", "name Any\ncategory Z\ncompany Other\nvariants V\n");
    _window = std::make_unique<MainWindow>();
    folio()->raiseLeaf(0);
    showIP("Any"); // has no form
    QVERIFY(!enabled());
    QCOMPARE(treeItem(), QStringLiteral("Any"));
    showIP("APB slave to serial master");
    QVERIFY(enabled());
}

void WindowTest::everyExampleGoesThrough_data() {
    const TestTable<QString> table("name");
    for (const QString& name : QDir(VELMORA_EXAMPLES).entryList({"*.velmora"}))
        table.row(qPrintable(name), name.section('.', 0, 0));
}

/// Dropped while another page is shown, saved by the menu, loaded by it into a form that has been reset.
void WindowTest::everyExampleGoesThrough() {
    QFETCH(QString, name);
    openWindow();
    const QString filename = _prefix->write(name + ".velmora", example(name));
    ConsoleRecorder recorder;
    QCOMPARE(dropFile(_window->windowHandle(), filename), accepted);
    QCOMPARE(recorder.take(), QStringList("Configuration loaded from " + filename));
    QCOMPARE(folio()->getCurrentIndex(), 0);
    QVERIFY(folio()->findChild<QToolButton*>("IPs")->isChecked());
    IPLeaf* leaf = shownIP();
    QVERIFY(leaf && leaf->isVisible());
    QCOMPARE(contentOf(*leaf), example(name));
    QCOMPARE(treeItem().toStdString(), leaf->getName());

    const QString saved = _prefix->path("saved.velmora");
    _dialogs.answer = saved;
    trigger("saveConfiguration");
    QCOMPARE(recorder.take(), QStringList("Configuration saved in " + saved));
    QCOMPARE(readFile(saved), example(name));

    press(leaf, "Reset");
    QVERIFY(contentOf(*leaf) != example(name));
    trigger("loadConfiguration");
    QCOMPARE(recorder.take(), QStringList("Configuration loaded from " + saved));
    QCOMPARE(contentOf(*leaf), example(name));
}

void WindowTest::cancelledDialogsDoNothing() {
    openWindow();
    showIP("Scope");
    const QByteArray before = contentOf(*shownIP());
    _dialogs.answer = QString();
    ConsoleRecorder recorder;
    trigger("loadConfiguration");
    QCOMPARE(_dialogs.asked.first(), QStringLiteral("Load configuration"));
    QCOMPARE(_dialogs.asked.last(), QStringLiteral("Velmora configuration (*.velmora);;All files (*)"));
    trigger("saveConfiguration");
    QCOMPARE(_dialogs.asked.first(), QStringLiteral("Save configuration"));
    QCOMPARE(_dialogs.asked.last(), QStringLiteral("Velmora configuration (*.velmora)"));
    QCOMPARE(recorder.lines(), QStringList());
    QCOMPARE(contentOf(*shownIP()), before);
    QVERIFY(QDir(_prefix->path()).entryList({"*.velmora"}).isEmpty());
}

void WindowTest::refusedFilesChangeNothing_data() {
    const TestTable<bool, QByteArray, QByteArray, QString> table("isDropped", "before", "after", "error");
    const char* range = "'1' cannot be the value of 'InputCount', expected a whole number from 2 to 240 "
                        "(filename: %1, line: 8)";
    table.row("loaded value", false, "InputCount = 16", "InputCount = 1", range);
    table.row(
        "dropped for an unknown IP", true, "name = Scope", "name = Scope 2",
        "No installed IP with a form is 'Scope 2' of Orvane, correct the name or install the IP (filename: %1, line: "
        "2)");
    table.row("dropped for another version", true, "uid = SCOPE", "uid = SCOPE0",
              "Configuration is for 'Scope' of Orvane (uid SCOPE0), not for 'Scope' of Orvane (uid SCOPE) "
              "(filename: %1, line: 2)");
    table.row("dropped text", true, "company = Orvane", "library ieee;",
              "Invalid line, expected 'key = value' (filename: %1, line: 1)");
}

void WindowTest::refusedFilesChangeNothing() {
    QFETCH(bool, isDropped);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QString, error);
    openWindow();
    folio()->showIP(findLeaf(isDropped ? "Mac fir" : "Scope"));
    const IPLeaf* shown = shownIP();
    const QByteArray contentBefore = contentOf(*findLeaf("Scope"));
    QByteArray wrong = example("scope_bus");
    QVERIFY(wrong.contains(before));
    const QString filename = _prefix->write("wrong.velmora", wrong.replace(before, after));
    _dialogs.answer = filename;
    ConsoleRecorder recorder;
    if (isDropped)
        dropFile(_window->windowHandle(), filename);
    else
        trigger("loadConfiguration");
    QCOMPARE(recorder.lines(), QStringList("E: " + error.arg(filename)));
    QCOMPARE(shownIP(), shown);
    QCOMPARE(contentOf(*findLeaf("Scope")), contentBefore);
}

void WindowTest::proposedNames() {
    openWindow();
    _dialogs.answer = QString();
    const auto propose = [&] {
        trigger("saveConfiguration");
        return QDir(_prefix->path()).relativeFilePath(_dialogs.asked.at(1));
    };
    showIP("SER/DES");
    QCOMPARE(propose(), QStringLiteral("ser_des.velmora"));
    FormText::write(*shownIP()->getForm(), "Entity=a/b");
    QCOMPARE(propose(), QStringLiteral("a_b.velmora"));
    QDir().mkpath("deep");
    _dialogs.answer = _prefix->path("deep/mine.velmora");
    propose();
    _dialogs.answer = QString();
    QCOMPARE(propose(), QStringLiteral("deep/mine.velmora"));
    showIP("Mac fir");
    QCOMPARE(propose(), QStringLiteral("deep/mac_fir.velmora"));

    _dialogs.answer = "no/such/folder/x.velmora";
    ConsoleRecorder recorder;
    propose();
    QCOMPARE(recorder.lines().size(), 1);
    QVERIFY(recorder.lines().first().startsWith("E: Unable to write configuration file (filename: no/such/folder/"));
}

/// Shows the scope and types into the first cell of its table, whose editor stays open. Null when it does not open.
QTableView* WindowTest::editCell(const QString& text) {
    QSettings().setValue("animations", "Never");
    showIP("Scope");
    auto* table = _window->findChild<Velmora::LineTableView*>("TriggerTableView");
    for (auto* title : findLeaf("Scope")->findChildren<QToolButton*>()) // opens the sections
        QTest::mouseClick(title, Qt::LeftButton);
    const auto isEdited = [] { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); };
    if (!QTest::qWaitForWindowActive(_window.get()) || !QTest::qWaitFor([table] { return table->isVisible(); }))
        return nullptr;
    table->setFocus();
    table->setCurrentIndex(table->model()->index(0, 1));
    table->edit(table->currentIndex());
    if (!QTest::qWaitFor(isEdited))
        return nullptr;
    QTest::keyClicks(QApplication::focusWidget(), text);
    return table;
}

void WindowTest::saveTakesTheEditedCell() {
    openWindow();
    auto* table = editCell("clk");
    QVERIFY(table);
    const QString saved = _prefix->path("saved.velmora");
    _dialogs.answer = saved;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(readFile(saved).contains("TriggerTableView/0 = clk, "));
    QCOMPARE(QApplication::focusWidget(), table);
}

/// What was typed would replace what is loaded as soon as the user leaves the cell, if that is what the cell held.
void WindowTest::loadEndsTheCellEdit() {
    openWindow();
    auto* table = editCell("clk");
    QVERIFY(table);
    const QByteArray content = example("scope_bus").replace("= request,", "= \"\",");
    const QString filename = _prefix->write("scope.velmora", content);
    _dialogs.answer = filename;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_O, Qt::ControlModifier);
    table->setFocus();
    QCOMPARE(contentOf(*findLeaf("Scope")), content);
}

void WindowTest::settingsStayAsTheyWere() {
    const auto keysAfter = [this](bool usesConfigurations) {
        QSettings().clear();
        openWindow();
        if (usesConfigurations) {
            drop("x.velmora", example("scope_bus"));
            trigger("saveConfiguration");
            search("mac");
        }
        _window->close();
        _window.reset();
        return QSettings().allKeys();
    };
    const QStringList keys = keysAfter(false);
    QCOMPARE(keysAfter(true), keys);
    QCOMPARE(QSettings().value("ScopeLeaf/Entity").toString(), QStringLiteral("scope_bus"));
}

void WindowTest::dropReachesEveryPlace() {
    openWindow();
    showIP("Mac fir");
    search("mac"); // which hides the other IP
    const QString filename = _prefix->write("x.velmora", example("scope_bus"));
    const QByteArray before = contentOf(*shownIP());
    QCOMPARE(dropFile(_window.get(), filename), accepted);
    QCOMPARE(shownIP(), findLeaf("Scope"));
    QCOMPARE(contentOf(*shownIP()), example("scope_bus"));
    QCOMPARE(contentOf(*findLeaf("Mac fir")), before);
    QCOMPARE(treeItem(), QString());
    QVERIFY(!folio()->findChild<Velmora::IPTreeView*>()->selectionModel()->hasSelection());
    search("");
    QCOMPARE(treeItem(), QStringLiteral("Scope"));
}

void WindowTest::droppedFilesInTurn() {
    openWindow();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(_prefix->write("a.velmora", example("fir_mac"))),
                  QUrl::fromLocalFile(_prefix->path("absent.velmora")),
                  QUrl::fromLocalFile(_prefix->write("b.velmora", example("spi_bridge")))});
    ConsoleRecorder recorder;
    QCOMPARE(drag(_window->windowHandle(), data), accepted);
    QCOMPARE(recorder.lines(), QStringList({"Configuration loaded from " + _prefix->path("a.velmora"),
                                            "E: Unable to open configuration file (filename: " +
                                                _prefix->path("absent.velmora") + ", reason: There is no such file)",
                                            "Configuration loaded from " + _prefix->path("b.velmora")}));
    QCOMPARE(contentOf(*findLeaf("Mac fir")), example("fir_mac"));
    QCOMPARE(shownIP(), findLeaf("APB slave to serial master"));
}

void WindowTest::uidTellsNamesakesApart() {
    const QByteArray description = "category C\ncompany Orvane\nvariants V\nname APB slave to serial master\nuid ";
    for (const char* uid : {"A", "B"})
        _prefix->addIP(QString("Orvane/") + uid, description + uid + "\n");
    _window = std::make_unique<MainWindow>();
    for (const char* uid : {"A", "B"}) {
        drop("x.velmora", example("spi_bridge").replace("uid = APBSERIALMASTER", QByteArray("uid = ") + uid));
        QVERIFY(shownIP());
        QCOMPARE(shownIP()->getUID(), std::string(uid));
    }
}

void WindowTest::otherDragsAreLeftAlone() {
    openWindow();
    QMimeData text;
    text.setText("fir");
    QCOMPARE(drag(_window->windowHandle(), text, false), QString()); // there is no field on the About page
    QMimeData link;
    link.setUrls({QUrl("https://example.org/x.velmora")});
    ConsoleRecorder recorder;
    QCOMPARE(drag(_window->windowHandle(), link, false), QString());

    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QCOMPARE(dropFile(_window->windowHandle(), _prefix->write("x.velmora", example("fir_mac"))), QString());
    QCOMPARE(recorder.lines(), QStringList());
}

VELMORA_TEST_MAIN(WindowTest)
#include "tst_window.moc"
