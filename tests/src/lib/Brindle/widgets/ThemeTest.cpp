#include <support/Contrast.h>
#include <support/Input.h>
#include <support/TestTable.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/QtLabel.h>
#include <Brindle/widgets/Theme.h>

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>

#include <functional>

using Brindle::Theme;

namespace {

void addThemes() {
    const TestTable<int> table("code");
    for (const Theme& theme : Theme::getThemes())
        table.row(theme.getName().toLatin1().constData(), int(theme.getCode()));
}

Theme fetchTheme() {
    QFETCH(int, code);
    return static_cast<Theme::Code>(code);
}

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
    void findsThemeByName_data();
    void findsThemeByName();
    void refusesUnknownNames();
    void textIsLegibleOnEveryGround_data();
    void textIsLegibleOnEveryGround();
    void paletteTextIsLegible_data();
    void paletteTextIsLegible();
    void iconsStandOut_data();
    void iconsStandOut();
    void imagesHaveBothDensities_data();
    void imagesHaveBothDensities();
    void styleSheetIsSound_data();
    void styleSheetIsSound();
    void wheelChangesNoInput_data();
    void wheelChangesNoInput();
    void disablingMovesNoText();
    void popupShowsSeparatorsAsHairlines();
    void capCarriesItsChild();
};

void ThemeTest::findsThemeByName_data() {
    const TestTable<QString, int> table("name", "code");
    table.row("as stored", "dark", int(Theme::Dark));
    table.row("as shown", "Dark", int(Theme::Dark));
    table.row("light", "light", int(Theme::Light));
    table.row("unknown", "sepia", int(Theme::Light));
    table.row("nothing stored", {}, int(Theme::Light));
}

void ThemeTest::findsThemeByName() {
    QFETCH(QString, name);
    QFETCH(int, code);
    const Theme theme = Theme::getTheme(name);
    QCOMPARE(int(theme.getCode()), code);
    QVERIFY(Theme::getThemes().getAt(static_cast<unsigned long>(code)) == theme);
}

void ThemeTest::refusesUnknownNames() {
    const std::function<void(const std::string&)> requests[] = {
        [](const std::string& name) { Theme().getColor(name); }, [](const std::string& name) { Theme().getIcon(name); },
        [](const std::string& name) { Theme().getImagePath(name); },
        [](const std::string& name) { Theme().getTip(name); }};
    for (const auto& request : requests) {
        for (const std::string name : {"", "no-such"}) {
            try {
                request(name);
                QFAIL("accepted");
            } catch (const Brindle::InternalError& error) {
                QCOMPARE(error.getField("name"), name);
            }
        }
    }
}

void ThemeTest::textIsLegibleOnEveryGround_data() {
    TestTable<int, QString, QString>("code", "text", "ground");
    for (const Theme& theme : Theme::getThemes()) {
        const auto add = [&](const char* text, const char* ground) {
            QTest::addRow("%s: %s on %s", qPrintable(theme.getName()), text, ground)
                << int(theme.getCode()) << text << ground;
        };
        for (const char* text : {"text", "muted", "disabled", "link", "error", "remark", "accent"}) {
            for (const char* ground : {"window", "surface", "row_hover", "background_text", "selected"})
                add(text, ground);
        }
        add("accent_text", "accent");
        add("accent_text", "accent_hover");
    }
}

void ThemeTest::textIsLegibleOnEveryGround() {
    QFETCH(QString, text);
    QFETCH(QString, ground);
    const Theme theme = fetchTheme();
    const double contrast =
        Contrast::between(theme.getColor(Brindle::getLabel(text)), theme.getColor(Brindle::getLabel(ground)));
    QVERIFY2(contrast >= Contrast::legibleText, QByteArray::number(contrast).constData());
}

void ThemeTest::paletteTextIsLegible_data() {
    addThemes();
}

void ThemeTest::paletteTextIsLegible() {
    const QPalette palette = fetchTheme().getPalette();
    using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto& [text, ground] :
             {Pair{QPalette::WindowText, QPalette::Window}, Pair{QPalette::Text, QPalette::Base},
              Pair{QPalette::Text, QPalette::AlternateBase}, Pair{QPalette::PlaceholderText, QPalette::Base},
              Pair{QPalette::ButtonText, QPalette::Button}, Pair{QPalette::ToolTipText, QPalette::ToolTipBase},
              Pair{QPalette::HighlightedText, QPalette::Highlight}, Pair{QPalette::Link, QPalette::Base},
              Pair{QPalette::LinkVisited, QPalette::Base}}) {
            const double contrast = Contrast::between(palette.color(group, text), palette.color(group, ground));
            QVERIFY2(contrast >= Contrast::legibleText,
                     qPrintable(QStringLiteral("group %1, role %2: %3").arg(int(group)).arg(int(text)).arg(contrast)));
        }
    }
    QVERIFY(Contrast::between(Qt::black, fetchTheme().getColor("section")) >=
            Contrast::legibleText); // titles of open sections
}

void ThemeTest::iconsStandOut_data() {
    TestTable<int, QString, int>("code", "name", "size");
    for (const Theme& theme : Theme::getThemes()) {
        for (const char* name : {"ip", "about", "settings", "copy", "select-all", "clear", "erase", "computer", "drive",
                                 "file", "folder"}) {
            for (const int size : {16, 32})
                QTest::addRow("%s: %s at %d", qPrintable(theme.getName()), name, size)
                    << int(theme.getCode()) << name << size;
        }
    }
}

void ThemeTest::iconsStandOut() {
    QFETCH(QString, name);
    QFETCH(int, size);
    const Theme theme = fetchTheme();
    const QIcon icon = theme.getIcon(Brindle::getLabel(name));
    const auto inkFor = [&](QIcon::Mode mode, QIcon::State state) {
        const QPixmap drawn = icon.pixmap(QSize(size, size), mode, state);
        return drawn.size() == QSize(size, size) ? inkOf(drawn.toImage()) : QColor();
    };
    const QColor normal = inkFor(QIcon::Normal, QIcon::Off);
    const QColor checked = inkFor(QIcon::Normal, QIcon::On);
    const QColor disabled = inkFor(QIcon::Disabled, QIcon::Off);
    QVERIFY(normal != checked && normal != disabled);
    for (const QColor& ink : {normal, checked, disabled}) {
        QVERIFY(ink.isValid());
        QVERIFY(Contrast::between(ink, theme.getColor("window")) >= Contrast::visibleGraphics);
        QVERIFY(Contrast::between(ink, theme.getColor("selected")) >= Contrast::visibleGraphics);
    }
}

void ThemeTest::imagesHaveBothDensities_data() {
    const TestTable<QString> table("path");
    table.row("program icon", ":/Brindle/rocket.png");
    for (const Theme& theme : Theme::getThemes()) {
        for (const char* name : {"velmora", "logo-mid"})
            QTest::addRow("%s: %s", qPrintable(theme.getName()), name) << theme.getImagePath(name);
    }
}

void ThemeTest::imagesHaveBothDensities() {
    QFETCH(QString, path);
    const QImage single(path);
    const QImage twice(QString(path).replace(".png", "@2x.png"));
    QVERIFY(!single.isNull());
    QCOMPARE(twice.size(), single.size() * 2);
    QVERIFY(inkOf(single).isValid());
}

void ThemeTest::styleSheetIsSound_data() {
    addThemes();
}

void ThemeTest::styleSheetIsSound() {
    const Theme theme = fetchTheme();
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
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    for (QWidget* widget : std::initializer_list<QWidget*>{new QLabel, new QComboBox, new QDoubleSpinBox,
                                                           new QTableView, new QTreeView, new QPlainTextEdit})
        layout->addWidget(widget);
    window.show();
    const bool shown = QTest::qWaitForWindowExposed(&window);
    qInstallMessageHandler(previous);
    QVERIFY(shown);
    QCOMPARE(warnings, QStringList());
}

void ThemeTest::wheelChangesNoInput_data() {
    const TestTable<bool> table("isComboBox");
    table.row("spin box", false);
    table.row("combo box", true);
}

void ThemeTest::wheelChangesNoInput() {
    QFETCH(bool, isComboBox);
    auto* form = new QWidget;
    form->setMinimumSize(200, 2000);
    auto* spinBox = new QSpinBox(form);
    spinBox->setValue(50);
    auto* comboBox = new QComboBox(form);
    comboBox->addItems({"a", "b"});
    QScrollArea area;
    area.setWidget(form);
    QWidget* input = isComboBox ? static_cast<QWidget*>(comboBox) : spinBox;
    Brindle::theme.enrich(&area);
    Brindle::theme.enrich(input);
    Brindle::theme.enrich(input);
    area.resize(300, 200);
    area.show();
    area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&area));

    const auto valueOf = [&] { return isComboBox ? comboBox->currentIndex() : 50 - spinBox->value(); };
    area.setFocus();
    turnWheel(input);
    QCOMPARE(valueOf(), 0);
    QVERIFY2(!input->hasFocus(), "the wheel must give no focus");
    QVERIFY2(area.verticalScrollBar()->value() > 0, "the form must scroll instead");

    input->setFocus(); // brings the input back into view
    QVERIFY(!input->visibleRegion().isEmpty());
    const int scrolled = area.verticalScrollBar()->value();
    turnWheel(input);
    QCOMPARE(valueOf(), 0);
    QVERIFY(area.verticalScrollBar()->value() > scrolled);
}

void ThemeTest::disablingMovesNoText() {
    Brindle::theme.apply(*qApp);
    for (QWidget* input : std::initializer_list<QWidget*>{new QComboBox, new QSpinBox, new QDoubleSpinBox}) {
        const std::unique_ptr<QWidget> owner(input);
        input->resize(120, 28);
        const auto textRect = [input] {
            if (auto* spinBox = qobject_cast<QAbstractSpinBox*>(input))
                return spinBox->findChild<QLineEdit*>()->geometry();
            QStyleOptionComboBox option;
            option.initFrom(input);
            return input->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, input);
        };
        input->show();
        QCoreApplication::processEvents();
        const QRect enabled = textRect();
        input->setEnabled(false);
        QCoreApplication::processEvents();
        QCOMPARE(textRect(), enabled);
    }
}

void ThemeTest::popupShowsSeparatorsAsHairlines() {
    Brindle::theme.apply(*qApp);
    QComboBox comboBox;
    comboBox.addItems({"All", "FamilyA"});
    comboBox.insertSeparator(1);
    Brindle::theme.enrich(&comboBox);
    Brindle::theme.enrich(&comboBox);
    comboBox.show();
    comboBox.showPopup();
    const QRect row = comboBox.view()->visualRect(comboBox.model()->index(1, 0));
    QVERIFY(row.height() < comboBox.view()->sizeHintForRow(0) / 2 + 1);
    const QImage drawn = comboBox.view()->viewport()->grab(row).toImage();
    const QColor border = Brindle::theme.getColor("border");
    int lines = 0;
    for (int y = 0; y < drawn.height(); ++y)
        lines += drawn.pixelColor(drawn.width() / 2, y) == border ? 1 : 0;
    QCOMPARE(lines, 1);
}

void ThemeTest::capCarriesItsChild() {
    QWidget page;
    auto* label = new QLabel("text", &page);
    QWidget* cap = Brindle::theme.getCapWidget(label);
    QCOMPARE(cap->property("child").value<QWidget*>(), static_cast<QWidget*>(label));
    QCOMPARE(label->parentWidget(), cap);
    QCOMPARE(cap->parentWidget(), &page);
    cap->resize(100, 50);
    page.show();
    QCoreApplication::processEvents();
    QVERIFY(cap->rect().adjusted(1, 1, -1, -1).contains(label->geometry()));
}

QTEST_MAIN(ThemeTest)
#include "ThemeTest.moc"
