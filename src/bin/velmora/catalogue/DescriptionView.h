#pragma once

#include <velmora/catalogue/DescriptionPage.h>

#include <QKeySequence>
#include <QString>
#include <QUrl>
#include <QWebView>

#include <functional>
#include <string>

namespace Velmora {

class FindBar;

/// Shows the description page of an IP. The page comes from the installation and is nothing but a document: scripts,
/// plugins, storage and everything that is not a file are switched off, and links are only reported. It takes the
/// theme's colours. Below its summary stands a line of links to its sections. All pages have one zoom (Ctrl and the
/// wheel or +, - and 0), and Ctrl+F finds a text.
class DescriptionView : public QWebView, public DescriptionPage {
    Q_OBJECT

public:
    /// The page is loaded when the view is first shown, since a catalogue may have a thousand of them. A file that does
    /// not exist now, or is gone by then, is told of in its place; one that is no regular file or too large to be
    /// shown in time is an error on the console, too.
    explicit DescriptionView(const QString& htmlFilename, QWidget* parent = nullptr);
    ~DescriptionView() override;

    QWidget* getWidget() override { return this; }
    bool goTo(const QUrl& link) override;

protected:
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QAction* addViewAction(const QString& text, const QList<QKeySequence>& shortcuts,
                           const std::function<void()>& action);
    void addViewActions();
    void addSectionLinks();
    void preparePage();
    void zoom(double factor);
    void showMissing();
    void showUnusable(const QString& filename, const std::string& reason);

    QUrl _pendingUrl; ///< What is still to be loaded; empty afterwards.
    FindBar* _findBar = nullptr;
};

} // namespace Velmora
