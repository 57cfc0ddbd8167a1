#pragma once

#include <velmora/window/TitleLine.h>

#include <QButtonGroup>
#include <QLabel>
#include <QStackedWidget>
#include <QToolButton>
#include <QWidget>

#include <string>

QT_BEGIN_NAMESPACE
class QSettings;
QT_END_NAMESPACE

namespace Velmora {

class IPLeaf;
class IPsLeaf;

/// The pages of the window (IP browser, About, Settings) with a column of buttons that choose among them and a title
/// line. A button's id is the index of its page.
class Folio : public QWidget, public TitleLine {
    Q_OBJECT

public:
    explicit Folio(QWidget* parent);

    /// Enable or disable the button with that id, if there is one; the page stays.
    void enableLeaf(unsigned long index);
    void disableLeaf(unsigned long index);
    /// Clicks the button with that id, if there is one.
    void raiseLeaf(unsigned long index);

    int getCurrentIndex() const;
    /// Index of the About page; -1 when there is none or it is suppressed.
    int getAboutLeafIndex() const;

    /// The IP whose page the user sees; null while the browser is not the current page.
    IPLeaf* getShownIP() const;
    /// Shows the browser with the page of that IP.
    void showIP(IPLeaf* leaf);

    void setTitle(const QString& title) override;

    /// Stores how the user wants to see the pages of the IPs.
    void save(QSettings& settings) const;

Q_SIGNALS:
    /// The user sees the page of another IP, or none any more.
    void shownIPChanged();

public Q_SLOTS:
    /// Shows the page with that index.
    void setLeaf(int index);

private:
    QAbstractButton* findButton(unsigned long index) const;
    void addShortcut(QToolButton* button, int id);
    void putButtonsFirst();
    QToolButton* createButton(const QString& text, const std::string& iconName, bool checked);

    QButtonGroup _buttonGroup;
    QStackedWidget* _stack = nullptr;
    IPsLeaf* _ipsLeaf = nullptr;
    QLabel* _titleLabel = nullptr;
};

} // namespace Velmora
