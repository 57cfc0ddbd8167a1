#pragma once

#include <QString>
#include <QUrl>
#include <QWebView>

#include <string>

namespace Velmora {

/// Shows the description page of an IP. The page comes from the installation and is nothing but a document: scripts,
/// plugins, storage and everything that is not a file are switched off, and links are only reported. It takes the
/// theme's colours.
class DescriptionView : public QWebView {
    Q_OBJECT

public:
    /// The page is loaded when the view is first shown, since a catalogue may have a thousand of them. A file that does
    /// not exist now, or is gone by then, is told of in its place; one that is no regular file or too large to be
    /// shown in time is an error on the console, too.
    explicit DescriptionView(const QString& htmlFilename, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void preparePage();
    void showMissing();
    void showUnusable(const QString& filename, const std::string& reason);

    QUrl _pendingUrl; ///< What is still to be loaded; empty afterwards.
};

} // namespace Velmora
