#include <velmora/catalogue/DescriptionView.h>

#include <velmora/catalogue/FindBar.h>
#include <velmora/catalogue/LocalAccessManager.h>
#include <velmora/catalogue/PageZoom.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/files/RegularFile.h>
#include <Brindle/widgets/Theme.h>
#include <Brindle/widgets/ThemeColors.h>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QWebElement>
#include <QWebFrame>
#include <QWebPage>
#include <QWebSettings>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace Velmora {

namespace {

constexpr int textSize = 14; // pixels
constexpr double zoomStep = 1.1;
constexpr std::size_t largestPage = 1024UL * 1024; // bytes
constexpr std::ptrdiff_t mostTags = 20'000;

/// A page that would keep the window from its other work is not given to it.
bool isBearable(std::string_view page) {
    return page.size() <= largestPage && std::ranges::count(page, '<') <= mostTags;
}

/// The accent, by a hair not opaque: the ground of a selection that is opaque gets another colour.
QString getSelectionGround() {
    const QColor accent = Brindle::theme.getColor("accent");
    return QStringLiteral("rgba(%1, %2, %3, 0.99)").arg(accent.red()).arg(accent.green()).arg(accent.blue());
}

/// The theme's colours, and scroll bars as the rest of the window has them, as a user style sheet.
QString getStyleSheet() {
    const QString css = QStringLiteral("html { background: @surface@; }"
                                       "body, h1, h2, h3, h4, th, pre, code { color: @text@; }"
                                       "a { color: @link@; }"
                                       "th, td, hr, pre, code { border-color: @border@; }"
                                       "th { background: @row_hover@; }"
                                       "pre, code { background: @background_text@; }"
                                       "p.sections { font-size: 0.9em; }"
                                       "img { -webkit-user-drag: none; }"
                                       "::selection { background: %1; color: @accent_text@; }"
                                       "::-webkit-scrollbar { width: 12px; height: 12px; background: @surface@; }"
                                       "::-webkit-scrollbar-thumb { background: @outline@; border: 2px solid @surface@;"
                                       " border-radius: 6px; min-height: 24px; }"
                                       "::-webkit-scrollbar-corner { background: @surface@; }");
    const QString figures = // which are drawn once for both grounds
        Brindle::theme == Brindle::Theme::Dark ? QStringLiteral("img { -webkit-filter: brightness(1.45); }")
                                               : QStringLiteral("img { -webkit-filter: brightness(0.7); }");
    return Brindle::ThemeColors(Brindle::theme.getCode()).fillIn(css.arg(getSelectionGround())) + figures;
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

DescriptionPage* makeView(const QString& htmlFilename, const DescriptionPage::LinkHandler& onLink) {
    auto* view = new DescriptionView(htmlFilename);
    QObject::connect(view, &DescriptionView::linkClicked, view, onLink);
    return view;
}

/// Programs that this is linked into show pages.
[[maybe_unused]] const auto shownByThis = DescriptionPage::maker = makeView;

} // namespace

DescriptionView::DescriptionView(const QString& htmlFilename, QWidget* parent) : QWebView(parent) {
    setAccessibleName(tr("Description of the IP"));
    addViewActions();
    connect(this, &QWebView::loadFinished, this, &DescriptionView::addSectionLinks);
    if (!htmlFilename.isEmpty() && QFileInfo::exists(htmlFilename))
        _pendingUrl = getUrl(htmlFilename);
    else
        showMissing();
}

/// The end of the page is the end of its loading, too.
DescriptionView::~DescriptionView() {
    disconnect(this, &QWebView::loadFinished, this, nullptr);
}

void DescriptionView::preparePage() {
    applyGlobalSettings();
    page()->setNetworkAccessManager(new LocalAccessManager(page()));
    page()->setLinkDelegationPolicy(QWebPage::DelegateAllLinks);
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

QAction* DescriptionView::addViewAction(const QString& text, const QList<QKeySequence>& shortcuts,
                                        const std::function<void()>& action) {
    auto* entry = new QAction(text, this);
    entry->setShortcuts(shortcuts);
    entry->setShortcutContext(Qt::WidgetShortcut);
    connect(entry, &QAction::triggered, this, action);
    addAction(entry);
    return entry;
}

/// What the context menu offers.
void DescriptionView::addViewActions() {
    addViewAction(tr("&Copy"), {QKeySequence::Copy}, [this] { triggerPageAction(QWebPage::Copy); });
    addViewAction(tr("Select &all"), {QKeySequence::SelectAll}, [this] { triggerPageAction(QWebPage::SelectAll); });
    addViewAction(tr("&Find..."), {QKeySequence::Find}, [this] {
        if (!_findBar)
            _findBar = new FindBar(this, [this](const QString& text, bool isBackward) {
                QWebPage::FindFlags flags = QWebPage::FindWrapsAroundDocument;
                flags.setFlag(QWebPage::FindBackward, isBackward);
                return findText(text, flags);
            });
        _findBar->open();
    });
    addViewAction(tr("Zoom &in"), {QKeySequence::ZoomIn, QKeySequence(QStringLiteral("Ctrl+="))},
                  [this] { zoom(PageZoom::get() * zoomStep); });
    addViewAction(tr("Zoom &out"), {QKeySequence::ZoomOut}, [this] { zoom(PageZoom::get() / zoomStep); });
    addViewAction(tr("Actual &size"), {QKeySequence(QStringLiteral("Ctrl+0"))}, [this] { zoom(1); });
}

void DescriptionView::contextMenuEvent(QContextMenuEvent* event) {
    actions().front()->setEnabled(hasSelection());
    QMenu::exec(actions(), event->globalPos(), nullptr, this);
    actions().front()->setEnabled(true);
}

/// The window has a search of its own, which would get the key otherwise.
bool DescriptionView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Find)) {
        actions().at(2)->trigger();
        event->accept();
        return true;
    }
    return QWebView::event(event);
}

void DescriptionView::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QWebView::wheelEvent(event);
        return;
    }
    zoom(event->angleDelta().y() > 0 ? PageZoom::get() * zoomStep : PageZoom::get() / zoomStep);
    event->accept();
}

void DescriptionView::zoom(double factor) {
    PageZoom::set(factor);
    setZoomFactor(PageZoom::get());
}

bool DescriptionView::goTo(const QUrl& link) {
    if (!link.hasFragment() || link.adjusted(QUrl::RemoveFragment) != url().adjusted(QUrl::RemoveFragment))
        return false;
    page()->mainFrame()->scrollToAnchor(link.fragment());
    return true;
}

void DescriptionView::addSectionLinks() {
    QStringList links;
    for (QWebElement title : page()->mainFrame()->findAllElements(QStringLiteral("h2"))) {
        if (!title.hasAttribute(QStringLiteral("id")))
            title.setAttribute(QStringLiteral("id"), QStringLiteral("section-%1").arg(links.size()));
        links += "<a href=\"#" + title.attribute(QStringLiteral("id")) + "\">" + title.toInnerXml() + "</a>";
    }
    QWebElement head = page()->mainFrame()->findFirstElement(QStringLiteral("p.summary"));
    if (head.isNull())
        head = page()->mainFrame()->findFirstElement(QStringLiteral("h1"));
    if (links.size() > 1 && !head.isNull())
        head.appendOutside("<p class=\"sections\">" + links.join(QStringLiteral(" &middot; ")) + "</p>");
}

void DescriptionView::showEvent(QShowEvent* event) {
    QWebView::showEvent(event);
    setZoomFactor(PageZoom::get());
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
