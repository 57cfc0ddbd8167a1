#include <velmora/catalogue/PageTabs.h>

#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>

namespace Velmora {

namespace {

/// The widget and all in it that Tab stops at.
QList<QWidget*> getTabStops(QWidget* widget) {
    QList<QWidget*> stops = QList<QWidget*>{widget} + widget->findChildren<QWidget*>();
    const auto isPassed = [](const QWidget* each) { return (each->focusPolicy() & Qt::TabFocus) == 0; };
    stops.erase(std::remove_if(stops.begin(), stops.end(), isPassed), stops.end());
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
    setTabOrder(framed->previousInFocusChain(), this);
    auto* layout = static_cast<QVBoxLayout*>(frame->layout());
    layout->setSpacing(0);
    layout->removeWidget(framed);
    layout->addWidget(this);
    layout->addLayout(_pages, 1);
    _pages->addWidget(framed);
    addTitle(title, shortcut);
    connect(this, &QTabBar::currentChanged, this, &PageTabs::showPage);
}

void PageTabs::addPage(const QString& title, const QKeySequence& shortcut, QWidget* page) {
    _pages->addWidget(page);
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
    QWidget* last = this;
    for (QWidget* stop : getTabStops(_pages->currentWidget())) { // what was built later would come after the form
        setTabOrder(last, stop);
        last = stop;
    }
}

} // namespace Velmora
