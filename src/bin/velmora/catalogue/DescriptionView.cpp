#include <velmora/catalogue/DescriptionView.h>

#include <velmora/catalogue/LocalAccessManager.h>

#include <Brindle/widgets/Theme.h>
#include <Brindle/widgets/ThemeColors.h>

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPaintEvent>
#include <QPainter>
#include <QWebPage>
#include <QWebSettings>

#include <utility>

namespace Velmora {

namespace {

constexpr int textSize = 14; // pixels

/// The theme's colours, and scroll bars as the rest of the window has them, as a user style sheet.
QString getStyleSheet() {
    const QString css = QStringLiteral("html { background: @surface@; }"
                                       "body, h1, h2, h3, h4, th, pre, code { color: @text@; }"
                                       "a { color: @link@; }"
                                       "th, td, hr, pre, code { border-color: @border@; }"
                                       "th { background: @row_hover@; }"
                                       "pre, code { background: @background_text@; }"
                                       "::-webkit-scrollbar { width: 12px; height: 12px; background: @surface@; }"
                                       "::-webkit-scrollbar-thumb { background: @outline@; border: 2px solid @surface@;"
                                       " border-radius: 6px; min-height: 24px; }"
                                       "::-webkit-scrollbar-corner { background: @surface@; }");
    return Brindle::ThemeColors(Brindle::theme.getCode()).fillIn(css);
}

/// A ".." in the name is resolved as the file system does it, with symbolic links followed; the web page would not.
QUrl getUrl(const QString& filename) {
    const QFileInfo file(filename);
    return QUrl::fromLocalFile(QFileInfo(file.path()).canonicalFilePath() + "/" + file.fileName());
}

/// What holds for every page.
void applyGlobalSettings() {
    QWebSettings* web = QWebSettings::globalSettings();
    for (const auto attribute : {QWebSettings::JavascriptEnabled, QWebSettings::JavaEnabled,
                                 QWebSettings::PluginsEnabled, QWebSettings::LocalStorageEnabled}) {
        web->setAttribute(attribute, false);
    }
    web->setFontFamily(QWebSettings::StandardFont, QFontInfo(QApplication::font()).family());
    web->setFontFamily(QWebSettings::FixedFont, QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    web->setFontSize(QWebSettings::DefaultFontSize, textSize);
    web->setFontSize(QWebSettings::DefaultFixedFontSize, textSize);
    web->setUserStyleSheetUrl(
        QUrl("data:text/css;charset=utf-8;base64," + QString::fromLatin1(getStyleSheet().toUtf8().toBase64())));
}

} // namespace

DescriptionView::DescriptionView(const QString& htmlFilename, QWidget* parent) : QWebView(parent) {
    setAccessibleName(tr("Description of the IP"));
    if (!htmlFilename.isEmpty() && QFileInfo::exists(htmlFilename))
        _pendingUrl = getUrl(htmlFilename);
    else
        showMissing();
}

void DescriptionView::preparePage() {
    [[maybe_unused]] static const bool applied = (applyGlobalSettings(), true);
    page()->setNetworkAccessManager(new LocalAccessManager(page()));
    page()->setLinkDelegationPolicy(QWebPage::DelegateAllLinks);
    // These entries of the context menu would leave the description or do nothing.
    for (const auto action : {QWebPage::OpenLink, QWebPage::OpenLinkInNewWindow, QWebPage::DownloadLinkToDisk,
                              QWebPage::OpenImageInNewWindow, QWebPage::DownloadImageToDisk}) {
        page()->action(action)->setVisible(false);
    }
}

void DescriptionView::showMissing() {
    preparePage();
    setHtml(QStringLiteral("<h2>Description file does not exists</h2>"));
}

void DescriptionView::showEvent(QShowEvent* event) {
    QWebView::showEvent(event);
    if (_pendingUrl.isEmpty())
        return;
    const QUrl url = std::exchange(_pendingUrl, QUrl());
    if (!QFileInfo::exists(url.toLocalFile())) { // removed since
        showMissing();
        return;
    }
    preparePage();
    setUrl(url);
}

/// At scales such as 150 % the page may end within a pixel, of which it would cover a part only.
void DescriptionView::paintEvent(QPaintEvent* event) {
    QPainter(this).fillRect(event->rect(), Brindle::theme.getColor("surface"));
    QWebView::paintEvent(event);
}

} // namespace Velmora
