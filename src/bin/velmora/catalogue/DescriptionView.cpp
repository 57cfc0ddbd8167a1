#include <velmora/catalogue/DescriptionView.h>

#include <velmora/catalogue/LocalAccessManager.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/widgets/RegularFile.h>
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

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace Velmora {

namespace {

constexpr int textSize = 14;                       // pixels
constexpr std::size_t largestPage = 1024UL * 1024; // bytes
constexpr std::ptrdiff_t mostTags = 20'000;

/// A page that would keep the window from its other work is not given to it.
bool isBearable(std::string_view page) {
    return page.size() <= largestPage && std::ranges::count(page, '<') <= mostTags;
}

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

void DescriptionView::showUnusable(const QString& filename, const std::string& reason) {
    Brindle::console.error(Brindle::located(Brindle::Critical("Unable to show description page"), BRINDLE_HERE,
                                            {{"filename", filename.toStdString()}, {"reason", reason}}));
    preparePage();
    setHtml(QStringLiteral("<h2>Description file cannot be shown</h2>"));
}

void DescriptionView::showEvent(QShowEvent* event) {
    QWebView::showEvent(event);
    if (_pendingUrl.isEmpty())
        return;
    const QUrl url = std::exchange(_pendingUrl, QUrl());
    const QString filename = url.toLocalFile();
    if (!QFileInfo::exists(filename)) { // removed since
        showMissing();
        return;
    }
    const auto file = Brindle::RegularFile::read(filename.toStdString(), largestPage + 1);
    if (!file.isRead() || !isBearable(file.text)) {
        showUnusable(filename, file.isRead() ? "It is too large or its elements too many" : file.reason);
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
