#include <support/ConsoleRecorder.h>
#include <support/Examples.h>
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
#include <QRegularExpression>
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
        _window.reset();
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
    void dropSaveAndLoad();
    void searchFindsPages();
    void formShareIsKept();
    void refusedFilesChangeNothing();
    void dropShowsAHiddenIP();
    void proposedNames();
    void saveTakesTheEditedCell();
    void uidTellsNamesakesApart();
    void otherDragsAreLeftAlone();
    void unseenPages();
};

/// Pages are made when they are first seen; the settings of the others stay what they were.
void WindowTest::unseenPages() {
    openWindow();
    showIP("Transpose");
    for (const IPLeaf* leaf : Velmora::ipHandler->getIPLeaves()) {
        QCOMPARE(!leaf->findChildren<QWidget*>().isEmpty(), leaf == shownIP());
    }
    _window.reset();
    QCOMPARE(QSettings().allKeys().filter(QRegularExpression(QStringLiteral("/Entity$"))).size(), 1);
}

void WindowTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _dialogs.answer = QStringLiteral("out.vhd");
}

void WindowTest::marksAreDrawn_data() {
    const TestTable<QString, QString, QString> table("ip", "values", "name");
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
    Brindle::theme.apply(*qApp);
    auto* editor = leaf->findChild<QWidget*>(name);
    const auto errorDots = [&] {
        const QImage image = editor->grab().toImage();
        int count = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                count += image.pixelColor(x, y) == Brindle::theme.getColor("error");
        }
        return count;
    };
    QCOMPARE(errorDots(), 0);
    press(leaf.get(), "Generate");
    QVERIFY(editor->isVisible());
    QTRY_VERIFY(errorDots() > 100); // once its section is open
    editor->setFocus();
    QVERIFY(errorDots() > 100);
}

void WindowTest::menu() {
    openWindow();
    const auto enabled = [this] { return _window->findChild<QAction*>("saveConfiguration")->isEnabled(); };
    QVERIFY(!enabled()); // the About page
    folio()->raiseLeaf(0);
    QVERIFY(enabled());
    folio()->raiseLeaf(2);
    QVERIFY(!enabled());
    QStringList entries;
    for (const QAction* action : _window->findChild<QMenu*>("fileMenu")->actions())
        entries += action->text() + " " + action->shortcut().toString();
    QCOMPARE(entries, QStringList({"&Load configuration... Ctrl+O", "Open &recent ", "&Examples ",
                                   "&Save configuration... Ctrl+S", " ", "&Quit Ctrl+Q"}));
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

/// Dropped while another page is shown, saved by the menu, loaded by it into a form that has been reset.
void WindowTest::dropSaveAndLoad() {
    openWindow();
    const QByteArray content = Examples::content("scope_bus");
    const QString filename = _prefix->write("x.velmora", content);
    ConsoleRecorder recorder;
    QCOMPARE(dropFile(_window->windowHandle(), filename), accepted);
    QCOMPARE(recorder.take(), QStringList("Configuration loaded from " + filename));
    QVERIFY(folio()->findChild<QToolButton*>("IPs")->isChecked());
    IPLeaf* leaf = shownIP();
    QVERIFY(leaf && leaf->isVisible());
    QCOMPARE(contentOf(*leaf), content);
    QCOMPARE(treeItem().toStdString(), leaf->getName());

    const QString saved = _prefix->path("saved.velmora");
    _dialogs.answer = saved;
    trigger("saveConfiguration");
    QCOMPARE(recorder.take(), QStringList("Configuration saved in " + saved));
    QCOMPARE(readFile(saved), content);
    press(leaf, "Reset");
    QVERIFY(contentOf(*leaf) != content);
    trigger("loadConfiguration");
    QCOMPARE(recorder.take(), QStringList("Configuration loaded from " + saved));
    QCOMPARE(contentOf(*leaf), content);

    const QByteArray before = contentOf(*findLeaf("Mac fir"));
    drop("other.velmora", Examples::content("fir_mac"));
    trigger("undo");
    QCOMPARE(contentOf(*findLeaf("Mac fir")), before);
    QCOMPARE(contentOf(*leaf), content);
    trigger("redo");
    QCOMPARE(contentOf(*findLeaf("Mac fir")), Examples::content("fir_mac"));
    folio()->raiseLeaf(2);
    QVERIFY(!_window->findChild<QAction*>("undo")->isEnabled());
    QCOMPARE(_window->windowTitle(), QString("Velmora"));

    const auto entries = [this](const char* name) {
        auto* menu = _window->findChild<QMenu*>(name);
        Q_EMIT menu->aboutToShow();
        return menu->actions();
    };
    QCOMPARE(entries("examplesMenu").size(), Examples::names().size());
    _window->close();
    openWindow();
    QCOMPARE(_window->windowTitle(), QString("Velmora"));
    QCOMPARE(entries("recentMenu").size(), 3);
    entries("recentMenu").last()->trigger(); // from the About page
    QCOMPARE(contentOf(*shownIP()), content);
    QCOMPARE(_window->windowTitle(), QString("Scope - x.velmora - Velmora"));
}

void WindowTest::searchFindsPages() {
    openWindow();
    const auto* tree = folio()->findChild<Velmora::IPTreeView*>();
    const auto found = [&](const char* text) {
        search(text);
        return tree->model()
            ->match(tree->model()->index(0, 0), Velmora::IPTreeView::VariantsRole, ".", -1,
                    Qt::MatchRegularExpression | Qt::MatchRecursive)
            .size();
    };
    QCOMPARE(found("fir"), 5);
    QCOMPARE(found("linear phase filter"), 1);
    QCOMPARE(found("spi"), 1);
    QCOMPARE(found("uart"), 1);
    QCOMPARE(found("logic analyzer"), 2);
    QCOMPARE(found("deserializer"), 1);
}

/// One position for all pages, until another share is preferred.
void WindowTest::formShareIsKept() {
    openWindow();
    showIP("Scope");
    const auto share = [this] {
        const QList<int> sizes = shownIP()->findChild<QSplitter*>()->sizes();
        return 100 * sizes.at(1) / (sizes.at(0) + sizes.at(1));
    };
    QVERIFY(qAbs(share() - 50) < 3);
    auto* grip = shownIP()->findChild<QSplitter*>()->handle(1);
    QTest::mouseDClick(grip, Qt::LeftButton);
    QCOMPARE(share(), 100);
    QTest::mouseDClick(grip, Qt::LeftButton);
    QVERIFY(qAbs(share() - 50) < 3);
    QTest::mousePress(grip, Qt::LeftButton);
    QMouseEvent drag(QEvent::MouseMove, QPoint(5, -60), grip->mapToGlobal(QPoint(5, -60)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(grip, &drag);
    QTest::mouseRelease(grip, Qt::LeftButton, {}, QPoint(5, -60));
    const int chosen = share();
    QVERIFY(chosen > 55);
    showIP("Mac fir");
    QVERIFY(qAbs(share() - chosen) < 3);
    _window->close();
    openWindow();
    showIP("Scope");
    QVERIFY(qAbs(share() - chosen) < 3);
    QSettings().setValue("size", "60");
    openWindow();
    showIP("Scope");
    QVERIFY(qAbs(share() - 60) < 3);
}

void WindowTest::refusedFilesChangeNothing() {
    openWindow();
    showIP("Mac fir");
    const QByteArray content = Examples::content("scope_bus");
    const QByteArray before = contentOf(*findLeaf("Scope"));
    const auto verify = [&](const QByteArray& from, const QByteArray& to, const QString& error, bool isDropped) {
        const QString filename = _prefix->write("wrong.velmora", QByteArray(content).replace(from, to));
        _dialogs.answer = filename;
        ConsoleRecorder recorder;
        if (isDropped)
            dropFile(_window->windowHandle(), filename);
        else
            trigger("loadConfiguration");
        QCOMPARE(recorder.lines(), QStringList("E: " + error.arg(filename)));
        QCOMPARE(shownIP(), findLeaf("Mac fir"));
        QCOMPARE(contentOf(*findLeaf("Scope")), before);
    };
    verify("name = Scope", "name = Scope 2",
           "No installed IP with a form is 'Scope 2' of Orvane, correct the name or install the IP (filename: %1, "
           "line: 2)",
           true);
    verify("company = Orvane", "library ieee;", "Invalid line, expected 'key = value' (filename: %1, line: 1)", false);
}

void WindowTest::dropShowsAHiddenIP() {
    openWindow();
    showIP("Mac fir");
    search("mac"); // which hides the other IP
    const QByteArray before = contentOf(*shownIP());
    QCOMPARE(dropFile(_window.get(), _prefix->write("x.velmora", Examples::content("scope_bus"))), accepted);
    QCOMPARE(shownIP(), findLeaf("Scope"));
    QCOMPARE(contentOf(*findLeaf("Mac fir")), before);
    QCOMPARE(treeItem(), QString());
    search("");
    QCOMPARE(treeItem(), QStringLiteral("Scope"));
}

void WindowTest::proposedNames() {
    openWindow();
    _dialogs.answer = QString();
    const auto propose = [&] {
        trigger("saveConfiguration");
        return QDir(_prefix->path()).relativeFilePath(_dialogs.asked.at(1));
    };
    showIP("SER/DES");
    const QByteArray before = contentOf(*shownIP());
    QCOMPARE(propose(), QStringLiteral("ser_des.velmora"));
    QCOMPARE(_dialogs.asked.first(), QStringLiteral("Save configuration"));
    QCOMPARE(_dialogs.asked.last(), QStringLiteral("Velmora configuration (*.velmora)"));
    trigger("loadConfiguration"); // cancelled as well
    QCOMPARE(_dialogs.asked.first(), QStringLiteral("Load configuration"));
    QCOMPARE(_dialogs.asked.last(), QStringLiteral("Velmora configuration (*.velmora);;All files (*)"));
    QCOMPARE(contentOf(*shownIP()), before);
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

/// As what was typed would replace what is loaded as soon as the user leaves the cell, loading ends the edit too.
void WindowTest::saveTakesTheEditedCell() {
    openWindow();
    auto* table = editCell("clk");
    QVERIFY(table);
    const QString saved = _prefix->path("saved.velmora");
    _dialogs.answer = saved;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
    const QByteArray content = readFile(saved);
    QVERIFY(content.contains("TriggerTableView/0 = clk, "));
    QCOMPARE(QApplication::focusWidget(), table);
    table->edit(table->currentIndex());
    QTest::keyClicks(QApplication::focusWidget(), "other");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_O, Qt::ControlModifier);
    table->setFocus();
    QCOMPARE(contentOf(*findLeaf("Scope")), content);
}

void WindowTest::uidTellsNamesakesApart() {
    const QByteArray description = "category C\ncompany Orvane\nvariants V\nname APB slave to serial master\nuid ";
    for (const char* uid : {"A", "B"})
        _prefix->addIP(QString("Orvane/") + uid, description + uid + "\n");
    _window = std::make_unique<MainWindow>();
    for (const char* uid : {"A", "B"}) {
        drop("x.velmora", Examples::content("spi_bridge").replace("uid = APBSERIALMASTER", QByteArray("uid = ") + uid));
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
    QCOMPARE(dropFile(_window->windowHandle(), _prefix->write("x.velmora", Examples::content("fir_mac"))), QString());
    QCOMPARE(recorder.lines(), QStringList());
}

VELMORA_TEST_MAIN(WindowTest)
#include "tst_window.moc"
