#pragma once

#include <QKeySequence>
#include <QString>
#include <QTabBar>

QT_BEGIN_NAMESPACE
class QStackedLayout;
QT_END_NAMESPACE

namespace Velmora {

/// Tabs in a frame of `Brindle::Theme::getCapWidget`, above what it holds: the first shows the widget that was framed,
/// the others what is added beside it. All of them are children of the frame. Tab leads from the tabs into the page
/// that is shown.
class PageTabs : public QTabBar {
    Q_OBJECT

public:
    /// The tabs become a child of the frame, above its widget, which the first tab shows.
    PageTabs(QWidget* frame, const QString& title, const QKeySequence& shortcut);

    /// Adds a page behind the others, which becomes a child of the frame. It may build what it shows when it is first
    /// shown.
    void addPage(const QString& title, const QKeySequence& shortcut, QWidget* page);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void addTitle(const QString& title, const QKeySequence& shortcut);
    void showPage(int index);
    void orderStops();

    QStackedLayout* const _pages;
};

} // namespace Velmora
