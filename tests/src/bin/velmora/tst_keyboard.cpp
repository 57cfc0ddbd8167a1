#include <support/Contrast.h>
#include <support/Examples.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/window/Folio.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/widgets/FileDialog.h>
#include <Brindle/widgets/Theme.h>

#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <memory>

using Velmora::Folio;
using Velmora::MainWindow;

namespace {

QString nameOf(const QString& example) {
    return QString::fromStdString(Examples::configuration(example).getName());
}

/// What a screen reader tells of the widget beside its value; combo boxes have their value as their name.
QString spokenNameOf(QWidget* widget) {
    const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
    if (!interface)
        return {};
    QStringList texts;
    for (const auto& [label, relation] : interface->relations(QAccessible::Label))
        texts += label->text(QAccessible::Name);
    texts += interface->text(qobject_cast<QComboBox*>(widget) ? QAccessible::Description : QAccessible::Name);
    return texts.join(' ').trimmed();
}

QString describe(const QWidget* widget) {
    return QStringLiteral("%1 '%2'").arg(widget->metaObject()->className(), widget->objectName());
}

/// True when whoever reads lines from left to right meets the second widget after the first one.
bool isInReadingOrder(const QWidget* first, const QWidget* second) {
    const QRect one(first->mapTo(first->window(), QPoint()), first->size());
    const QRect other(second->mapTo(second->window(), QPoint()), second->size());
    return other.top() >= one.top() || other.left() >= one.right();
}

/// Whether Tab is to stop at the widget; of a group of exclusive buttons it stops at the checked one.
bool isTabStop(const QWidget* widget) {
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
           !widget->focusProxy();
}

/// Number of pixels in which the pictures differ clearly.
int countClearChanges(const QImage& one, const QImage& other) {
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const bool isClear =
                one.pixel(x, y) != other.pixel(x, y) &&
                Contrast::between(one.pixelColor(x, y), other.pixelColor(x, y)) >= Contrast::visibleGraphics;
            count += isClear ? 1 : 0;
        }
    }
    return count;
}

} // namespace

/// The whole window without a mouse, and what a screen reader finds in it.
class KeyboardTest : public QObject {
    Q_OBJECT

private:
    /// Opens the window on a page of the folio, or on that of the IP with all its sections unfolded.
    void open(const QString& page);
    void press(int key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(_window->windowHandle(), static_cast<Qt::Key>(key), modifiers);
    }
    /// The stops of Tab (or Shift+Tab) from the checked button of the folio until it has the focus again.
    QList<QWidget*> walk(int key);
    QWidget* currentIP() const { return _window->findChild<QStackedWidget*>("leafStack")->currentWidget(); }
    Folio* folio() const { return _window->findChild<Folio*>(); }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<MainWindow> _window;
    QStringList _unseen; ///< Stops of the walks that were scrolled out of view.

private Q_SLOTS:
    void init();
    void cleanup();

    void tabFollowsTheEye_data();
    void tabFollowsTheEye();
    void focusIsVisible_data();
    void focusIsVisible();
    void shortcuts();
    void tableCellsAreNamed();
};

void KeyboardTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    for (const QString& example : Examples::names()) {
        const QString ip = nameOf(example);
        const QString directory = "Orvane/" + QString(ip).replace('/', '_');
        _prefix->write("share/velmora/" + directory + "/page.html",
                       "<h1>IP</h1><a href='one.html'>one</a> and <a href='other.html'>other</a>");
        _prefix->addKnownIP(ip, "", "html page.html\n");
    }
    QSettings().setValue("animations", "Never");
}

void KeyboardTest::cleanup() {
    _unseen.clear();
    _window.reset();
    _prefix.reset();
    Brindle::FileDialog::setSaveFileNameFunction({});
}

void KeyboardTest::open(const QString& page) {
    Brindle::theme.apply(*qApp);
    _window = std::make_unique<MainWindow>();
    _window->resize(1000, 4000); // no form scrolls
    _window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(_window.get()));
    const int index = QStringList{"IPs", "About", "Settings"}.indexOf(page);
    folio()->raiseLeaf(static_cast<unsigned long>(std::max(index, 0)));
    if (index < 0) {
        auto* tree = _window->findChild<QTreeView*>("treeView");
        const QModelIndexList found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, page, 1,
                                                           Qt::MatchExactly | Qt::MatchRecursive);
        tree->setCurrentIndex(found.at(0));
        for (auto* toggle : currentIP()->findChildren<QToolButton*>())
            toggle->click();
    }
    QTRY_VERIFY(!QApplication::focusWidget() || QApplication::focusWidget()->isVisible());
    QCoreApplication::processEvents();
}

QList<QWidget*> KeyboardTest::walk(int key) {
    constexpr int mostStops = 100;
    QWidget* start = nullptr;
    for (auto* button : folio()->findChildren<QToolButton*>()) {
        if (button->isChecked() && button->autoRaise())
            start = button;
    }
    if (!start)
        qFatal("no page is chosen");
    start->setFocus();
    QList<QWidget*> stops;
    do {
        QWidget* stop = QApplication::focusWidget();
        if (stops.isEmpty() || stops.last() != stop) // the links of a page are stops within one widget
            stops += stop;
        if (stop->visibleRegion().isEmpty())
            _unseen += describe(stop);
        press(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    } while (QApplication::focusWidget() != start && stops.size() < mostStops);
    return stops;
}

void KeyboardTest::tabFollowsTheEye_data() {
    const TestTable<QString, int> table("page", "tab");
    for (const char* page : {"About", "Settings"})
        table.row(page, page, 0);
    for (const QString& example : Examples::names())
        table.row(qPrintable(example), nameOf(example), 0);
    table.row("preview", nameOf(Examples::names().constFirst()), 1);
}

void KeyboardTest::tabFollowsTheEye() {
    QFETCH(QString, page);
    QFETCH(int, tab);
    open(page);
    if (tab > 0)
        currentIP()->findChild<QTabBar*>("pageTabs")->setCurrentIndex(tab);
    QList<QWidget*> stops = walk(Qt::Key_Tab);
    for (QWidget* widget : _window->findChildren<QWidget*>()) {
        if (isTabStop(widget))
            QVERIFY2(stops.count(widget) == 1, qPrintable(describe(widget) + " is not reached once"));
    }
    for (int index = 0; index < stops.size(); ++index) {
        QVERIFY2(isTabStop(stops.at(index)), qPrintable(describe(stops.at(index))));
        QVERIFY2(!spokenNameOf(stops.at(index)).isEmpty(), qPrintable(describe(stops.at(index)) + " has no name"));
        if (index > 0)
            QVERIFY2(isInReadingOrder(stops.at(index - 1), stops.at(index)),
                     qPrintable(describe(stops.at(index - 1)) + " leads to " + describe(stops.at(index))));
    }
    std::reverse(stops.begin() + 1, stops.end());
    QCOMPARE(walk(Qt::Key_Backtab), stops);

    _window->resize(1000, 500); // the form is scrolled now
    QCoreApplication::processEvents();
    QCOMPARE(walk(Qt::Key_Backtab), stops);
    std::reverse(stops.begin() + 1, stops.end());
    QCOMPARE(walk(Qt::Key_Tab), stops);
    QCOMPARE(_unseen, QStringList());
}

void KeyboardTest::focusIsVisible_data() {
    const TestTable<QString> table("page");
    for (const char* page : {"Settings", "SER/DES"})
        table.row(page, page);
}

void KeyboardTest::focusIsVisible() {
    QFETCH(QString, page);
    _prefix->write("share/velmora/Orvane/" + QString(page).replace('/', '_') + "/page.html", "<h1>no link</h1>");
    open(page);
    const QList<QWidget*> stops = walk(Qt::Key_Tab);
    for (QWidget* stop : stops) {
        stop->setFocus(Qt::TabFocusReason);
        const auto takePicture = [&] {
            QCoreApplication::processEvents();
            const QRect place(stop->mapTo(_window.get(), QPoint()), stop->size());
            return _window->grab(place.adjusted(-4, -4, 4, 4)).toImage(); // with what surrounds it
        };
        const QImage focused = takePicture();
        stop->clearFocus();
        const int changes = countClearChanges(focused, takePicture());
        QVERIFY2(changes >= std::max(stop->width(), stop->height()) / 2,
                 qPrintable(QStringLiteral("%1: %2 pixels").arg(describe(stop)).arg(changes)));
    }
}

void KeyboardTest::shortcuts() {
    open("About"); // the checked button has the focus, the arrows go to the others
    press(Qt::Key_Down);
    QCOMPARE(folio()->getCurrentIndex(), 2);
    open("SER/DES");
    for (const int index : {1, 2, 0}) {
        press(Qt::Key_1 + index, Qt::AltModifier);
        QTRY_COMPARE(folio()->getCurrentIndex(), index);
    }
    QStringList proposals;
    Brindle::FileDialog::setSaveFileNameFunction([&](auto&&...) {
        proposals += currentIP()->findChild<QLineEdit*>("Entity")->text();
        return QString();
    });
    auto* entity = currentIP()->findChild<QLineEdit*>("Entity");
    entity->setText("serdes");
    press(Qt::Key_G, Qt::AltModifier);
    QTRY_COMPARE(proposals, QStringList("serdes")); // the form that is shown, and no other
    QTRY_VERIFY(!currentIP()->findChild<QPushButton*>("Generate")->isDown());
    press(Qt::Key_R, Qt::AltModifier);
    QTRY_COMPARE(entity->text(), QString());
}

void KeyboardTest::tableCellsAreNamed() {
    open("SER/DES");
    auto* table = currentIP()->findChild<QTableView*>("LocationTableView/SER");
    table->setFocus();
    table->setCurrentIndex(table->model()->index(0, 2));
    press(Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    QVERIFY(table->isAncestorOf(editor));
    QCOMPARE(editor->accessibleName(), QStringLiteral("SER0, Output delay line"));
    press(Qt::Key_Tab); // there is no further cell
    QCOMPARE(QApplication::focusWidget(), table);
    press(Qt::Key_Tab);
    QVERIFY(!table->hasFocus());
}

VELMORA_TEST_MAIN(KeyboardTest)
#include "tst_keyboard.moc"
