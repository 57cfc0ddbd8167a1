#include <velmora/catalogue/PageTabs.h>

#include <QEvent>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>
#include <iterator>

namespace Velmora {

namespace {

/// The widget and all in it that Tab stops at; the list of a combo box is in a window of its own.
QList<QWidget*> getTabStops(QWidget* widget) {
    const QList<QWidget*> all = QList<QWidget*>{widget} + widget->findChildren<QWidget*>();
    QList<QWidget*> stops;
    std::ranges::copy_if(all, std::back_inserter(stops), [widget](const QWidget* each) {
        return (each->focusPolicy() & Qt::TabFocus) != 0 && each->window() == widget->window();
    });
    return stops;
}

} // namespace

PageTabs::PageTabs(QWidget* frame, const QString& title, const QKeySequence& shortcut)
    : QTabBar(frame), _pages(new QStackedLayout) {
    setObjectName(QStringLiteral("pageTabs"));
    setAccessibleName(tr("Views of the IP"));
    setDrawBase(false);
    setExpanding(false);
    auto* framed = frame->property("child").value<QWidget*>();
    setTabOrder(framed, this); // where it is, and then before it
    setTabOrder(this, framed);
    auto* layout = static_cast<QVBoxLayout*>(frame->layout());
    layout->setSpacing(0);
    layout->removeWidget(framed);
    layout->addWidget(this, 0, Qt::AlignLeft);
    layout->addLayout(_pages, 1);
    _pages->addWidget(framed);
    addTitle(title, shortcut);
    connect(this, &QTabBar::currentChanged, this, &PageTabs::showPage);
}

void PageTabs::addPage(const QString& title, const QKeySequence& shortcut, QWidget* page) {
    _pages->addWidget(page);
    page->installEventFilter(this);
    addTitle(title, shortcut);
}

void PageTabs::addTitle(const QString& title, const QKeySequence& shortcut) {
    const int index = addTab(title);
    setTabToolTip(index, QStringLiteral("%1 (%2)").arg(title, shortcut.toString(QKeySequence::NativeText)));
    connect(new QShortcut(shortcut, this), &QShortcut::activated, this, [this, index] {
        setCurrentIndex(index);
        setFocus(Qt::ShortcutFocusReason);
    });
}

void PageTabs::showPage(int index) {
    const bool isFocusLost = _pages->currentWidget()->isAncestorOf(focusWidget());
    _pages->setCurrentIndex(index);
    if (isFocusLost)
        setFocus();
}

/// A page may build what it consists of once it gets the event.
bool PageTabs::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Show)
        QMetaObject::invokeMethod(this, &PageTabs::orderStops, Qt::QueuedConnection);
    return QTabBar::eventFilter(object, event);
}

void PageTabs::orderStops() {
    QWidget* last = this;
    for (QWidget* stop : getTabStops(_pages->currentWidget())) { // what was built later would come after the form
        setTabOrder(last, stop);
        last = stop;
    }
}

} // namespace Velmora
