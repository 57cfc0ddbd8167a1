#include <Brindle/widgets/Theme.h>

#include <Brindle/collections/ListCollection.h>
#include <Brindle/core/Exception.h>
#include <Brindle/widgets/CapFrame.h>
#include <Brindle/widgets/LineIconEngine.h>
#include <Brindle/widgets/PopupDelegate.h>
#include <Brindle/widgets/QtLabel.h>
#include <Brindle/widgets/ThemeResources.h>
#include <Brindle/widgets/WheelGuard.h>

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTableView>

namespace Brindle {

namespace {

constexpr int scrollStep = 24; // pixels

/// The resource's full path; the name of what does not exist is refused.
QString existing(const QString& path, const char* refusal, const std::string& name) {
    ThemeResources::load();
    QString resource = QStringLiteral(":/Brindle/") + path;
    if (!QFile::exists(resource))
        throw located(InternalError(refusal), BRINDLE_HERE, {{"name", name}});
    return resource;
}

void enrichComboBox(QComboBox* comboBox) {
    WheelGuard::guard(comboBox);
    if (!qobject_cast<PopupDelegate*>(comboBox->itemDelegate()))
        comboBox->setItemDelegate(new PopupDelegate(comboBox));
}

void enrichItemView(QAbstractItemView* view) {
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    if (auto* table = qobject_cast<QTableView*>(view))
        table->horizontalHeader()->setHighlightSections(false);
    view->ensurePolished(); // rows that are measured before the view is shown get the style sheet's height
}

void enrichAbstractScrollArea(QAbstractScrollArea* area) {
    area->verticalScrollBar()->setSingleStep(scrollStep);
    area->horizontalScrollBar()->setSingleStep(scrollStep);
}

/// Qt scrolls to what gets the focus from within the area only. What can be seen was perhaps clicked and stays in
/// place, and so does everything when the window becomes active again, after a dialog for instance.
void enrichScrollArea(QScrollArea* area) {
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](QWidget* last, QWidget* focused) {
        if (last && focused && area->isAncestorOf(focused) && focused->visibleRegion().isEmpty())
            area->ensureWidgetVisible(focused);
    });
}

} // namespace

Theme theme;

Collection<Theme> Theme::getThemes() {
    return ListCollection<Theme>(std::list<Theme>{Light, Dark});
}

Theme Theme::getTheme(const QString& name) {
    for (const Theme& candidate : getThemes()) {
        if (candidate.getName().compare(name, Qt::CaseInsensitive) == 0)
            return candidate;
    }
    return Light;
}

QString Theme::getName() const {
    return _code == Dark ? QStringLiteral("Dark") : QStringLiteral("Light");
}

QColor Theme::getColor(const std::string& name) const {
    return QColor(getColorName(name));
}

QString Theme::getColorName(const std::string& name) const {
    return ThemeColors(_code).getColorName(name);
}

QIcon Theme::getIcon(const std::string& name) const {
    existing(QStringLiteral("icons/%1.svg").arg(toQString(name)), "Unknown icon", name);
    return QIcon(new LineIconEngine(ThemeColors(_code), toQString(name)));
}

QString Theme::getImagePath(const std::string& name) const {
    return existing(ThemeColors(_code).getFolder() + QStringLiteral("/images/%1.png").arg(toQString(name)),
                    "Unknown image", name);
}

QString Theme::getTip(const std::string& name) const {
    if (name == "theme")
        return QApplication::translate("Brindle::Theme", "Colours of the whole program, light or dark.");
    if (name == "animations")
        return QApplication::translate("Brindle::Theme", "Whether the sections of a form slide open or open at once.");
    if (name == "size")
        return QApplication::translate(
            "Brindle::Theme", "How much of an IP's page its form takes; its description gets the rest of the height.");
    throw located(InternalError("Unknown tip"), BRINDLE_HERE, {{"name", name}});
}

QPalette Theme::getPalette() const {
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, const char* name) { palette.setColor(role, getColor(name)); };
    set(QPalette::Window, "window");
    set(QPalette::WindowText, "text");
    set(QPalette::Base, "surface");
    set(QPalette::AlternateBase, "background_text");
    set(QPalette::ToolTipBase, "surface");
    set(QPalette::ToolTipText, "text");
    set(QPalette::PlaceholderText, "muted");
    set(QPalette::Text, "text");
    set(QPalette::Button, "surface");
    set(QPalette::ButtonText, "text");
    set(QPalette::BrightText, "error");
    set(QPalette::Light, "surface");
    set(QPalette::Midlight, "row_hover");
    set(QPalette::Mid, "border");
    set(QPalette::Dark, "border");
    set(QPalette::Shadow, "outline");
    set(QPalette::Highlight, "accent");
    set(QPalette::HighlightedText, "accent_text");
    set(QPalette::Link, "link");
    set(QPalette::LinkVisited, "link");
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::HighlightedText, QPalette::PlaceholderText})
        palette.setColor(QPalette::Disabled, role, getColor("disabled"));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, getColor("selected"));
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Button})
        palette.setColor(QPalette::Disabled, role, getColor("window"));
    return palette;
}

QString Theme::getStyleSheet() const {
    return ThemeColors(_code).fillIn(QString::fromUtf8(ThemeResources::read(QStringLiteral("style.qss"))));
}

void Theme::apply(QApplication& application) const {
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(getPalette());
    application.setStyleSheet(getStyleSheet());
}

void Theme::enrich(QWidget* widget) const {
    if (auto* comboBox = qobject_cast<QComboBox*>(widget))
        enrichComboBox(comboBox);
    else if (qobject_cast<QAbstractSpinBox*>(widget))
        WheelGuard::guard(widget);
    if (auto* view = qobject_cast<QAbstractItemView*>(widget))
        enrichItemView(view);
    if (auto* area = qobject_cast<QAbstractScrollArea*>(widget))
        enrichAbstractScrollArea(area);
    if (auto* area = qobject_cast<QScrollArea*>(widget))
        enrichScrollArea(area);
}

QWidget* Theme::getCapWidget(QWidget* widget) const {
    return new CapFrame(widget, widget->parentWidget());
}

} // namespace Brindle
