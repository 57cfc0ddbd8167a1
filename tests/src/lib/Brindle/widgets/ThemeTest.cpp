#include <support/Contrast.h>
#include <support/Input.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

using Brindle::Theme;

namespace {

/// The colour of the drawing's fully covered pixels; invalid when it has none.
QColor inkOf(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (const QColor pixel = image.pixelColor(x, y); pixel.alpha() == 255)
                return pixel;
        }
    }
    return QColor();
}

QStringList warnings;

void collectWarning(QtMsgType, const QMessageLogContext&, const QString& message) {
    if (!message.startsWith("This plugin does not support")) // what the offscreen platform lacks
        warnings << message;
}

} // namespace

class ThemeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isFoundByName();
    void textIsLegibleOnEveryGround();
    void iconsStandOut();
    void imagesHaveBothDensities();
    void styleSheetIsSound();
    void wheelScrollsPastInputs();
    void unknownNamesAreRefused();
};

void ThemeTest::isFoundByName() {
    QCOMPARE(int(Theme::getTheme("dark").getCode()), int(Theme::Dark));
    QCOMPARE(int(Theme::getTheme("light").getCode()), int(Theme::Light));
    QCOMPARE(int(Theme::getTheme("sepia").getCode()), int(Theme::Light));
    QCOMPARE(int(Theme::getTheme({}).getCode()), int(Theme::Light));
    for (const Theme& theme : Theme::getThemes())
        QVERIFY(Theme::getTheme(theme.getName()) == theme);
}

void ThemeTest::textIsLegibleOnEveryGround() {
    for (const Theme& theme : Theme::getThemes()) {
        const auto verify = [&theme](const QColor& text, const QColor& ground) {
            QVERIFY2(Contrast::between(text, ground) >= Contrast::legibleText,
                     qPrintable(QString("%1: %2 on %3").arg(theme.getName(), text.name(), ground.name())));
        };
        for (const char* text : {"text", "muted", "disabled", "link", "error", "remark", "accent"}) {
            for (const char* ground : {"window", "surface", "row_hover", "background_text", "selected"})
                verify(theme.getColor(text), theme.getColor(ground));
        }
        verify(theme.getColor("accent_text"), theme.getColor("accent"));
        verify(theme.getColor("accent_text"), theme.getColor("accent_hover"));
        verify(Qt::black, theme.getColor("section")); // open sections
        using Role = QPalette::ColorRole;
        const QPalette palette = theme.getPalette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const auto& [text, ground] :
                 std::initializer_list<std::pair<Role, Role>>{{Role::WindowText, Role::Window},
                                                              {Role::Text, Role::Base},
                                                              {Role::Text, Role::AlternateBase},
                                                              {Role::PlaceholderText, Role::Base},
                                                              {Role::ButtonText, Role::Button},
                                                              {Role::ToolTipText, Role::ToolTipBase},
                                                              {Role::HighlightedText, Role::Highlight},
                                                              {Role::Link, Role::Base},
                                                              {Role::LinkVisited, Role::Base}})
                verify(palette.color(group, text), palette.color(group, ground));
        }
    }
}

void ThemeTest::iconsStandOut() {
    constexpr QSize size(16, 16);
    for (const Theme& theme : Theme::getThemes()) {
        for (const char* name : {"ip", "about", "settings", "copy", "select-all", "clear", "erase", "computer", "drive",
                                 "file", "folder"}) {
            const QIcon icon = theme.getIcon(name);
            const auto inkFor = [&](QIcon::Mode mode, QIcon::State state) {
                const QPixmap drawn = icon.pixmap(size, mode, state);
                return drawn.size() == size ? inkOf(drawn.toImage()) : QColor();
            };
            const QColor normal = inkFor(QIcon::Normal, QIcon::Off);
            const QColor checked = inkFor(QIcon::Normal, QIcon::On);
            const QColor disabled = inkFor(QIcon::Disabled, QIcon::Off);
            QVERIFY2(normal != checked && normal != disabled, name);
            for (const QColor& ink : {normal, checked, disabled}) {
                for (const char* ground : {"window", "selected"})
                    QVERIFY2(ink.isValid() &&
                                 Contrast::between(ink, theme.getColor(ground)) >= Contrast::visibleGraphics,
                             name);
            }
        }
    }
}

void ThemeTest::imagesHaveBothDensities() {
    QStringList paths{":/Brindle/rocket.png"};
    for (const Theme& theme : Theme::getThemes())
        paths << theme.getImagePath("velmora") << theme.getImagePath("logo-mid");
    for (const QString& path : paths) {
        const QImage single(path);
        QVERIFY2(inkOf(single).isValid(), qPrintable(path));
        QCOMPARE(QImage(QString(path).replace(".png", "@2x.png")).size(), single.size() * 2);
    }
}

void ThemeTest::styleSheetIsSound() {
    for (const Theme& theme : Theme::getThemes()) {
        const QString sheet = theme.getStyleSheet();
        QVERIFY2(!sheet.section("*/", 1).contains(QLatin1Char('@')), "a name was not replaced");
        QRegularExpressionMatchIterator urls = QRegularExpression("url\\(([^)]*)\\)").globalMatch(sheet);
        QVERIFY(urls.hasNext());
        while (urls.hasNext()) {
            const QString path = urls.next().captured(1);
            QVERIFY2(QFile::exists(path), qPrintable(path));
        }
        warnings.clear();
        const QtMessageHandler previous = qInstallMessageHandler(collectWarning);
        theme.apply(*qApp);
        QTableView window;
        window.show();
        const bool shown = QTest::qWaitForWindowExposed(&window);
        qInstallMessageHandler(previous);
        QVERIFY(shown);
        QCOMPARE(warnings, QStringList());
    }
}

void ThemeTest::wheelScrollsPastInputs() {
    auto* form = new QWidget;
    form->setMinimumSize(200, 2000);
    auto* input = new QSpinBox(form);
    input->setValue(50);
    QScrollArea area;
    area.setWidget(form);
    Brindle::theme.enrich(input);
    area.resize(300, 200);
    area.show();
    area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&area));
    area.setFocus();
    for (int turns = 1; turns <= 2; ++turns) {
        area.verticalScrollBar()->setValue(0);
        turnWheel(input);
        QCOMPARE(input->value(), 50);
        QCOMPARE(input->hasFocus(), turns == 2); // the wheel gives no focus
        QVERIFY(area.verticalScrollBar()->value() > 0);
        input->setFocus();
    }
}

void ThemeTest::unknownNamesAreRefused() {
    QVERIFY_EXCEPTION_THROWN(Theme().getColor("no-such"), Brindle::InternalError);
    QVERIFY_EXCEPTION_THROWN(Theme().getIcon("no-such"), Brindle::InternalError);
    QVERIFY_EXCEPTION_THROWN(Theme().getImagePath("no-such"), Brindle::InternalError);
    QVERIFY_EXCEPTION_THROWN(Theme().getTip("no-such"), Brindle::InternalError);
}

QTEST_MAIN(ThemeTest)
#include "ThemeTest.moc"
