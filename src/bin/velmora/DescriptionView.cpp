#include <velmora/DescriptionView.h>

#include <velmora/LocalAccessManager.h>

#include <Brindle/Theme.h>

#include <QFileInfo>
#include <QWebPage>
#include <QWebSettings>

#include <utility>

namespace Velmora {

namespace {

/// The theme's colours as a user style sheet, in the form that the web settings take.
QUrl userStyleSheet() {
    const Brindle::Theme& theme = Brindle::theme;
    const QString css =
        QStringLiteral("html { background: %1; } body { color: %2; } a { color: %3; } "
                       "h1, h2, h3, h4, th { color: %2; } th, td, hr { border-color: %4; } "
                       "th { background: %5; } pre, code { color: %2; background: %6; border-color: %4; }")
            .arg(theme.getColorName("surface"), theme.getColorName("text"), theme.getColorName("accent"),
                 theme.getColorName("border"), theme.getColorName("row_hover"), theme.getColorName("background_text"));
    return QUrl(QStringLiteral("data:text/css;charset=utf-8;base64,") + QString::fromLatin1(css.toUtf8().toBase64()));
}

/// What holds for every page.
void applyGlobalSettings() {
    QWebSettings* web = QWebSettings::globalSettings();
    for (const auto attribute : {QWebSettings::JavascriptEnabled, QWebSettings::JavaEnabled,
                                 QWebSettings::PluginsEnabled, QWebSettings::LocalStorageEnabled}) {
        web->setAttribute(attribute, false);
    }
    web->setUserStyleSheetUrl(userStyleSheet());
}

} // namespace

DescriptionView::DescriptionView(const QString& htmlFilename, QWidget* parent) : QWebView(parent) {
    setAccessibleName(tr("Description of the IP"));
    if (!htmlFilename.isEmpty() && QFileInfo::exists(htmlFilename)) {
        _pendingUrl = QUrl::fromLocalFile(htmlFilename);
    } else {
        preparePage();
        setHtml(QStringLiteral("<h2>Description file does not exists</h2>"));
    }
}

void DescriptionView::preparePage() {
    [[maybe_unused]] static const bool applied = (applyGlobalSettings(), true);
    page()->setNetworkAccessManager(new LocalAccessManager(page()));
    page()->setLinkDelegationPolicy(QWebPage::DelegateAllLinks);
}

void DescriptionView::showEvent(QShowEvent* event) {
    QWebView::showEvent(event);
    if (_pendingUrl.isEmpty())
        return;
    preparePage();
    setUrl(std::exchange(_pendingUrl, QUrl()));
}

} // namespace Velmora
