#include <support/ConsoleRecorder.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/window/AboutLeaf.h>
#include <velmora/window/Folio.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/core/Build.h>
#include <Brindle/widgets/Theme.h>

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QPushButton>
#include <QSettings>
#include <QTest>

#include <memory>

using Velmora::AboutLeaf;

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
    void aboutText();
    void aboutLinksOpenOutside();
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
    table.row("another letter case", {"DARK", "never", "60"}, {"Dark", "", "60%"});
    table.row("no such items", {"sepia", "Sometimes", "55"}, {"Light", "", ""});
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
    table.row("stored theme is in capitals", {"LIGHT", "", ""}, "theme", "Dark", "dark", "Theme");
    table.row("animations", {"", "", ""}, "animations", "Never", "Never", "Animations");
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
    QFile::remove(QSettings().fileName());
    QVERIFY(QDir().mkpath(QSettings().fileName()));
    combo("size")->setCurrentText("60%");
    QCOMPARE(_recorder->lines(), QStringList({remarkOn("Size"), "E: The preference cannot be kept: " +
                                                                    QSettings().fileName() + " cannot be written."}));
}

void PagesTest::aboutText() {
    open();
    auto* page = _window->findChild<AboutLeaf*>();
    const QString text = page->toPlainText();
    for (const QString& part : {QString("1.0.0"), Quillon::application->getDistribution(), QString("Irene Castellan"),
                                QString("Joris Vandaele"), QString("Maud Terrier"), QString("Tobias Lindqvist"),
                                Quillon::application->getCopyright(false)})
        QVERIFY2(text.contains(part), qPrintable(part));
    QCOMPARE(text.contains("Compilation"), Brindle::isDebug());
    QVERIFY(page->toHtml().contains(":/Brindle/light/images/velmora.png"));
    QVERIFY(page->isReadOnly());
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

VELMORA_TEST_MAIN(PagesTest)
#include "tst_pages.moc"
