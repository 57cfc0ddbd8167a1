#include <support/ConsoleRecorder.h>
#include <support/ReadOnlyFolder.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/window/AboutLeaf.h>
#include <velmora/window/Folio.h>
#include <velmora/window/MainWindow.h>
#include <velmora/window/SettingsLeaf.h>

#include <Brindle/core/Build.h>
#include <Brindle/widgets/Theme.h>

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QTextBlock>

#include <memory>

using Velmora::AboutLeaf;
using Velmora::SettingsLeaf;

namespace {

const QStringList keys{"theme", "animations", "size"};

/// The text that a key has in the settings; null when it is not there.
QString stored(const QString& key) {
    return QSettings().value(key).toString();
}

QStringList allStored() {
    return {stored("theme"), stored("animations"), stored("size")};
}

void store(const QStringList& values) {
    QSettings settings;
    for (int index = 0; index < keys.size(); ++index) {
        if (!values.at(index).isEmpty())
            settings.setValue(keys.at(index), values.at(index));
    }
}

QString remarkOn(const QString& preference) {
    return "R: " + preference + " setting will take effect on new application launch";
}

} // namespace

/// The Settings page and the About page.
class PagesTest : public QObject {
    Q_OBJECT

private:
    /// Starts anew, as far as these pages can tell.
    void open();
    QComboBox* combo(const QString& key) const { return _window->findChild<QComboBox*>(key + "Combo"); }
    QStringList shown() const {
        return {combo("theme")->currentText(), combo("animations")->currentText(), combo("size")->currentText()};
    }

    std::unique_ptr<TestPrefix> _prefix;
    std::unique_ptr<ConsoleRecorder> _recorder;
    std::unique_ptr<Velmora::MainWindow> _window;

private Q_SLOTS:
    void init();
    void cleanup();

    void settingsShowWhatIsStored_data();
    void settingsShowWhatIsStored();
    void choiceIsStoredAtOnce_data();
    void choiceIsStoredAtOnce();
    void restoreDefaults_data();
    void restoreDefaults();
    void failureToStoreIsTold();
    void settingsLayout();
    void aboutText();
    void aboutLinksOpenOutside();
    void aboutImagesAreSmooth();
};

void PagesTest::init() {
    _prefix = std::make_unique<TestPrefix>();
    _recorder = std::make_unique<ConsoleRecorder>();
}

void PagesTest::cleanup() {
    _window.reset();
    _recorder.reset();
    _prefix.reset();
    Brindle::theme = Brindle::Theme::Light;
}

void PagesTest::open() {
    Brindle::theme = Brindle::Theme::getTheme(stored("theme"));
    _window = std::make_unique<Velmora::MainWindow>();
}

void PagesTest::settingsShowWhatIsStored_data() {
    const TestTable<QStringList, QStringList> table("values", "texts");
    table.row("nothing", {"", "", ""}, {"Light", "Always", "50%"});
    table.row("others", {"dark", "Never", "70"}, {"Dark", "Never", "70%"});
    table.row("last ones", {"light", "Always", "80"}, {"Light", "Always", "80%"});
    table.row("another letter case", {"DARK", "never", "60"}, {"Dark", "", "60%"});
    table.row("no such items", {"sepia", "Sometimes", "55"}, {"Light", "", ""});
    table.row("with the sign", {"Light", "Never ", "60%"}, {"Light", "", ""});
}

void PagesTest::settingsShowWhatIsStored() {
    QFETCH(QStringList, values);
    QFETCH(QStringList, texts);
    store(values);
    open();
    QCOMPARE(shown(), texts);
    _window->findChild<Velmora::Folio*>()->raiseLeaf(2);
    QCOMPARE(allStored().join(','), values.join(','));
    QCOMPARE(_recorder->lines(), QStringList());
}

void PagesTest::choiceIsStoredAtOnce_data() {
    const TestTable<QStringList, QString, QString, QString, QString> table("before", "key", "choice", "expected",
                                                                           "remark");
    table.row("theme", {"", "", ""}, "theme", "Dark", "dark", "Theme");
    table.row("theme back", {"dark", "", ""}, "theme", "Light", "light", "Theme");
    table.row("stored theme is in capitals", {"LIGHT", "", ""}, "theme", "Dark", "dark", "Theme");
    table.row("animations", {"", "", ""}, "animations", "Never", "Never", "Animations");
    table.row("animations from none", {"", "never", ""}, "animations", "Never", "Never", "Animations");
    table.row("size", {"", "", ""}, "size", "70%", "70", "Size");
    table.row("size from none", {"", "", "55"}, "size", "80%", "80", "Size");
}

void PagesTest::choiceIsStoredAtOnce() {
    QFETCH(QStringList, before);
    QFETCH(QString, key);
    QFETCH(QString, choice);
    QFETCH(QString, expected);
    QFETCH(QString, remark);
    store(before);
    open();
    const QStringList others = keys.filter(QRegularExpression("^(?!" + key + ")"));
    combo(key)->setCurrentText(choice);
    QCOMPARE(_recorder->take(), QStringList(remarkOn(remark)));
    QCOMPARE(stored(key), expected);
    for (const QString& other : others)
        QCOMPARE(stored(other), before.at(keys.indexOf(other)));
    QVERIFY(readFile(QSettings().fileName()).contains((key + "=" + expected).toLatin1()));

    // What is stored is compared, not what the page showed.
    const int chosen = combo(key)->currentIndex();
    combo(key)->setCurrentIndex(chosen == 0 ? 1 : 0);
    _recorder->take();
    QSettings().setValue(key, expected);
    combo(key)->setCurrentIndex(chosen);
    QCOMPARE(_recorder->lines(), QStringList());
    QCOMPARE(stored(key), expected);
}

void PagesTest::restoreDefaults_data() {
    const TestTable<QStringList, QStringList, QStringList> table("before", "after", "remarks");
    const QStringList defaults{"light", "Always", "50"};
    table.row("all others", {"dark", "Never", "80"}, defaults, {"Theme", "Animations", "Size"});
    table.row("one other", {"light", "Never", "50"}, defaults, {"Animations"});
    table.row("nothing stored", {"", "", ""}, {"", "", ""}, {});
    table.row("no such items", {"light", "Sometimes", "55"}, defaults, {"Animations", "Size"});
}

void PagesTest::restoreDefaults() {
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(QStringList, remarks);
    store(before);
    open();
    _window->findChild<Velmora::Folio*>()->raiseLeaf(2);
    QTest::mouseClick(_window->findChild<QPushButton*>("RestoreDefaults"), Qt::LeftButton);
    for (QString& remark : remarks)
        remark = remarkOn(remark);
    QCOMPARE(_recorder->lines(), remarks);
    QCOMPARE(allStored().join(','), after.join(','));
    QCOMPARE(shown(), QStringList({"Light", "Always", "50%"}));
}

void PagesTest::failureToStoreIsTold() {
    open();
    const QString file = QSettings().fileName();
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QFile::setPermissions(_prefix->path(), QFile::Permissions(0x7755)); // the way to the folder is open to everybody
    const ReadOnlyFolder folder(QFileInfo(file).path());
    if (!folder.isEffective())
        QSKIP("permissions do not bind this user, who cannot become another one either");
    combo("size")->setCurrentText("60%");
    QCOMPARE(_recorder->lines(),
             QStringList({remarkOn("Size"), "E: The preference cannot be kept: " + file + " cannot be written."}));
}

void PagesTest::settingsLayout() {
    open();
    auto* page = _window->findChild<SettingsLeaf*>();
    const auto* grid = dynamic_cast<QGridLayout*>(page->layout());
    const QStringList labels{"Theme", "Use animations when folding/unfolding",
                             "Default size of generation section of the IPs"};
    const QStringList items{"Light,Dark", "Never,Always", "50%,60%,70%,80%"};
    for (int index = 0; index < keys.size(); ++index) {
        const auto* label = qobject_cast<QLabel*>(grid->itemAtPosition(index + 1, 0)->widget());
        QComboBox* box = combo(keys.at(index));
        QCOMPARE(label->text(), labels.at(index));
        QCOMPARE(label->buddy(), box);
        QCOMPARE(grid->itemAtPosition(index + 1, 2)->widget(), box);
        QCOMPARE(box->statusTip(), Brindle::theme.getTip(keys.at(index).toStdString()));
        QStringList texts;
        for (int item = 0; item < box->count(); ++item)
            texts += box->itemText(item);
        QCOMPARE(texts.join(','), items.at(index));
    }
    QCOMPARE(grid->itemAtPosition(5, 4)->widget(), page->findChild<QPushButton*>("RestoreDefaults"));
    QCOMPARE(page->findChild<QPushButton*>("RestoreDefaults")->text(), QStringLiteral("Restore defaults"));
    QCOMPARE(grid->itemAtPosition(4, 0)->widget()->minimumWidth(), 40);
    QCOMPARE(grid->columnMinimumWidth(1), 20);
    QCOMPARE(QPoint(grid->columnStretch(3), grid->rowStretch(6)), QPoint(1, 1));

    const QWidget* title = grid->itemAtPosition(0, 4)->widget(); // across all columns
    QCOMPARE(grid->itemAtPosition(0, 0)->widget(), title);
    QCOMPARE(title->contentsMargins(), QMargins(0, 40, 0, 0));
    auto* row = dynamic_cast<QBoxLayout*>(title->layout());
    QCOMPARE(qobject_cast<QLabel*>(row->itemAt(1)->widget())->text(), QStringLiteral("<b>General</b>"));
    for (const int ruler : {0, 2}) {
        QCOMPARE(row->stretch(ruler), 1);
        QCOMPARE(row->itemAt(ruler)->widget()->height(), 1);
        QCOMPARE(row->itemAt(ruler)->widget()->styleSheet(), QStringLiteral("background-color: #d3d8e0;"));
    }
}

void PagesTest::aboutText() {
    open();
    auto* page = _window->findChild<AboutLeaf*>();
    const QString head = "<tr><td style=\"font-weight:bold; padding-right:25px;\">";
    QString build;
    if (Brindle::isDebug()) {
        const QTextDocument& document = *page->document();
        const QString date = document.find("Compilation").block().next().text();
        QVERIFY(QRegularExpression("^\\d{1,2} \\w+ \\d{4} - \\d\\d:\\d\\d$").match(date).hasMatch());
        build = head + "Compilation</td><td>" + date + "</td></tr>" + head + "Svn revision</td><td>12183</td></tr>";
    }
    const QString wide = "<td width=50%>";
    QTextBrowser expected;
    expected.setHtml(
        "<body><div><table><tr><td align=\"center\" width=100%><img src=\":/Brindle/light/images/velmora.png\"/></td>"
        "</tr></table></div>"
        "<div><p style=\"margin-left:25px; font-size:x-large;\">Version</p><hr><table style=\"margin-left:50px;\">" +
        head + "Release</td><td>1.0.0</td></tr>" + head + "Distribution</td><td>" +
        Quillon::application->getDistribution() + "</td></tr>" + build +
        "</table></div><br><br>"
        "<div><p style=\"margin-left: 25px; font-size:x-large;\">Designers</p><hr><table style=\"margin-left:50px\">"
        "<tr>" +
        wide + "Irene Castellan</td>" + wide + "Joris Vandaele</td></tr><tr>" + wide + "Maud Terrier</td>" + wide +
        "Tobias Lindqvist</td></tr></table><br><br>"
        "<div><p style=\"margin-left:25px; font-size:x-large;\">" +
        Quillon::application->getCopyright(true) + "</p><hr><div style=\"margin-left:50px\">" +
        Quillon::application->getDisclaimer() +
        "</div><br><br><div><table style=\"margin-right:20px\"><tr><td align=\"right\" width=100%>"
        "<img src=\":/Brindle/light/images/logo-mid.png\"/></td></tr></table></div></body>");
    QCOMPARE(page->toHtml(), expected.toHtml());
    QVERIFY(page->isReadOnly());
    QCOMPARE(page->frameStyle(), 0);
}

/// Takes the place of the desktop's browser.
class Browser : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened += url; }
};

void PagesTest::aboutLinksOpenOutside() {
    open();
    Browser browser;
    QDesktopServices::setUrlHandler("https", &browser, "open");
    auto* page = _window->findChild<AboutLeaf*>();
    page->append("<a href='https://orvane.example/'>Orvane</a>");
    const QString html = page->toHtml();
    page->setFocus();
    QTest::keyClick(page, Qt::Key_Tab); // to the link
    QTest::keyClick(page, Qt::Key_Return);
    QDesktopServices::unsetUrlHandler("https");
    QCOMPARE(browser.opened, QList<QUrl>{QUrl("https://orvane.example/")});
    QCOMPARE(page->toHtml(), html);
}

/// Between two pixels of the logo that a scale draws apart there is a mixture of both; repeated pixels have none.
void PagesTest::aboutImagesAreSmooth() {
    open();
    auto* page = _window->findChild<AboutLeaf*>();
    const QSize logo = QPixmap(Brindle::theme.getImagePath("velmora")).size();
    page->setHtml("<img src=\"" + Brindle::theme.getImagePath("velmora") + "\"/>");
    page->resize(logo + QSize(80, 40));
    const auto countColors = [&](double scale) {
        QImage picture((QSizeF(page->size()) * scale).toSize(), QImage::Format_RGB32);
        picture.setDevicePixelRatio(scale);
        page->render(&picture);
        QSet<QRgb> colors;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                colors += picture.pixel(x, y);
        }
        return colors.size();
    };
    QVERIFY(countColors(1.5) > countColors(1) * 3 / 2);
}

VELMORA_TEST_MAIN(PagesTest)
#include "tst_pages.moc"
