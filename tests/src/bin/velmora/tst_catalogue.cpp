#include <support/ConsoleRecorder.h>
#include <support/Contrast.h>
#include <support/Examples.h>
#include <support/TestMain.h>
#include <support/TestPrefix.h>
#include <support/TestTable.h>

#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/window/Folio.h>
#include <velmora/window/IPTreeView.h>
#include <velmora/window/IPsLeaf.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSet>
#include <QSettings>
#include <QSignalSpy>
#include <QSplitter>
#include <QStackedWidget>
#include <QTcpServer>
#include <QWebElement>
#include <QWebFrame>
#include <QWebView>

#include <memory>
#include <optional>
#include <sys/stat.h>
#include <utility>

using Velmora::IPHandler;
using Velmora::IPLeaf;

namespace {

QByteArray description(const QByteArray& name, const QByteArray& category, const QByteArray& company,
                       const QByteArray& variants) {
    return "name " + name + "\ncategory " + category + "\ncompany " + company + "\nvariants " + variants + "\n";
}

template <class Strings>
QStringList toList(const Strings& strings) {
    QStringList list;
    for (const std::string& text : strings)
        list += QString::fromStdString(text);
    return list;
}

QStringList namesOf(const Velmora::IPLeaves& leaves) {
    QStringList list;
    for (const IPLeaf* leaf : leaves)
        list += QString::fromStdString(leaf->getName());
    return list;
}

/// The texts of a filtered tree, "depth:text", from top to bottom.
QStringList rowsOf(const QAbstractItemModel& model, const QModelIndex& parent = {}, int depth = 0) {
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        rows += QString::number(depth) + ":" + index.data().toString();
        rows += rowsOf(model, index, depth + 1);
    }
    return rows;
}

} // namespace

/// Discovery of the installed IPs, the pages of IPs and the browser.
class CatalogueTest : public QObject {
    Q_OBJECT

private:
    /// A handler takes its window as a name only, so that none needs to be shown here.
    void createHandler() { _handler = IPHandler::create(reinterpret_cast<Velmora::MainWindow*>(this)); }
    /// What is thrown instead; nothing else may be.
    template <class Error, class Work>
    static std::optional<Error> thrownBy(Work work) {
        try {
            work();
        } catch (const Error& error) {
            return error;
        }
        return std::nullopt;
    }
    /// A page that no handler owns.
    std::unique_ptr<IPLeaf> open(const QByteArray& company = "Orvane", const QByteArray& name = "Any",
                                 const QByteArray& furtherLines = {}) const {
        return std::make_unique<IPLeaf>(
            _prefix->addIP("X/y", description(name, "A", company, "V") + furtherLines).toStdString());
    }
    /// A handler with these IPs, each as "name|category|company|variants".
    void attach(const QStringList& ips);
    /// The browser with these IPs of Orvane, each as "name|category|variants".
    void browse(const QStringList& ips);
    Velmora::IPTreeView* tree() const { return _folio->findChild<Velmora::IPTreeView*>("treeView"); }
    QLineEdit* search() const { return _folio->findChild<QLineEdit*>("searchEdit"); }
    void choose(const char* combo, const QString& text) const {
        _folio->findChild<QComboBox*>(combo)->setCurrentText(text);
    }
    QStringList shownRows() const { return rowsOf(*tree()->model()); }
    /// Shows the page of the IPs in an active window, the first one selected.
    void show() const;
    /// The name of the IP whose page is shown, and the current item of the tree.
    QString shown() const {
        const auto* leaf = static_cast<IPLeaf*>(_folio->findChild<QStackedWidget*>("leafStack")->currentWidget());
        return QString::fromStdString(leaf->getName()) + "|" + tree()->currentIndex().data().toString();
    }

    std::unique_ptr<TestPrefix> _prefix;
    Quillon::Owned<IPHandler> _handler;
    std::unique_ptr<Velmora::Folio> _folio;

private Q_SLOTS:
    void init() { _prefix = std::make_unique<TestPrefix>(); }
    void cleanup() {
        _folio.reset();
        _handler.reset();
        _prefix.reset();
    }

    void discoveryFollowsTheDirectories();
    void knownNamesHaveForms();
    void configurationWidgetIsSetOnce();
    void failedDiscoveryLeavesNothing();
    void handlerAttaches();
    void queries();
    void unusableDescriptions();
    void formShareComesFromTheSettings();
    void descriptionPage();
    void pagesAreLegible_data();
    void pagesAreLegible();
    void pagesAreRead();
    void treeFollowsTheCatalogue();
    void selectionAndSearchShowPages();
    void filters_data();
    void filters();
    void filtersKeepClosedNodes();
};

void CatalogueTest::attach(const QStringList& ips) {
    createHandler();
    int number = 0;
    for (const QString& ip : ips) {
        const QList<QByteArray> parts = ip.toUtf8().split('|');
        const QString filename = _prefix->addIP(QString("X/%1").arg(++number),
                                                description(parts.at(0), parts.at(1), parts.at(2), parts.at(3)));
        _handler->attach(new IPLeaf(filename.toStdString()));
    }
}

void CatalogueTest::browse(const QStringList& ips) {
    QStringList complete;
    for (const QString& ip : ips)
        complete += ip.section('|', 0, 1) + "|Orvane|" + ip.section('|', 2);
    attach(complete);
    _folio = std::make_unique<Velmora::Folio>(nullptr);
}

void CatalogueTest::show() const {
    _folio->resize(900, 500);
    _folio->show();
    _folio->raiseLeaf(0);
    QVERIFY(QTest::qWaitForWindowActive(_folio.get()));
}

void CatalogueTest::discoveryFollowsTheDirectories() {
    _prefix->addIP("Orvane/one", description("One", "A", "Orvane", "V"));
    _prefix->addIP(".other/.two", description("Two", "A", "Other", "V"));
    _prefix->addIP(".other/.two/deeper", description("Too deep", "A", "Other", "V"));
    _prefix->addIP(".other", description("Too high", "A", "Other", "V"));
    _prefix->write("share/velmora/Files/only-a-file", "x");
    _prefix->write("share/velmora/Orvane/without/description.html", "x");
    _prefix->write("share/velmora/config", "nonsense");
    _prefix->addIP("Orvane/alpha", description("Alpha", "A", "Orvane", "V"));
    createHandler();
    QStringList names;
    for (const QString& provider :
         QDir("share/velmora").entryList({"Orvane", ".other"}, QDir::Dirs | QDir::Hidden, QDir::Unsorted))
        names += provider == ".other"
                     ? QStringList("Two")
                     : QDir("share/velmora/Orvane").entryList({"one", "alpha"}, QDir::Dirs, QDir::Unsorted);
    QCOMPARE(namesOf(_handler->getIPLeaves()).join(' ').toLower(),
             names.join(' ').toLower()); // in the order of the listing
}

void CatalogueTest::failedDiscoveryLeavesNothing() {
    _prefix->addBridge("");
    const QString broken = _prefix->addIP("Zebra/broken", "name A\ncompany B\ncategory C\n");
    const auto error = thrownBy<Brindle::Critical>([this] { createHandler(); });
    QCOMPARE(error->what(), "No variant specified");
    QCOMPARE(QString::fromStdString(error->getField("filename")), broken);
    QCOMPARE(error->getLocation().file, std::string_view("src/bin/velmora/IPLeaf"));
    QVERIFY(!Velmora::ipHandler);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
    QVERIFY(QSettings().allKeys().isEmpty()); // the form of the bridge, gone by now, stored nothing
    qunsetenv("ORVANE_PREFIX");
    QVERIFY(thrownBy<std::logic_error>([this] { createHandler(); }));
}

void CatalogueTest::handlerAttaches() {
    const auto error = thrownBy<Brindle::FactoryFailed>([] { IPHandler::create(nullptr); });
    QCOMPARE(error->what(), "Null mainWindow");
    QCOMPARE(error->getLocation().function, std::string_view("preCreate"));
    createHandler();
    QCOMPARE(Velmora::ipHandler, _handler.get());
    const Velmora::IPLeaves view = _handler->getIPLeaves();
    _handler->attach(nullptr);
    QVERIFY(view.isEmpty());
    _handler->attach(open().release());
    QCOMPARE(view.getCount(), 1UL);

    QCOMPARE(_handler->getAlias(), std::string("IPHandler"));
    QVERIFY(_handler->getLabel().ends_with("IPHandler"));
    QCOMPARE(_handler->getRecord()->getHeader(), std::string("IPHandler"));
    _handler.reset();
    QVERIFY(!Velmora::ipHandler);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void CatalogueTest::queries() {
    attach({"One|DSP/Filters|Orvane|B A", "Two|DSP|Other|A C", "Three|DSP/Filters|Orvane|C"});
    const Velmora::IPLeaves leaves = _handler->getIPLeaves();
    QCOMPARE(toList(leaves.getCompanies()), QStringList({"Orvane", "Other"}));
    QCOMPARE(toList(leaves.getVariants()), QStringList({"B", "A", "C"}));
    QCOMPARE(namesOf(leaves.getFromCompany("Orvane")), QStringList({"One", "Three"}));
    QCOMPARE(namesOf(leaves.getFromCategory("DSP")), QStringList({"Two"}));
    QCOMPARE(namesOf(leaves.getForVariant("A")), QStringList({"One", "Two"}));
    QCOMPARE(namesOf(leaves.getFromCompany("Orvane").getForVariant("C")), QStringList({"Three"}));
}

/// Of its own company alone, and of those names alone.
void CatalogueTest::knownNamesHaveForms() {
    for (const QString& example : Examples::names()) {
        const QByteArray name = Examples::configuration(example).getName().c_str();
        QVERIFY2(IPLeaf(_prefix->addKnownIP(name, "").toStdString()).getForm(), name.constData());
        QVERIFY(!open("orvane", name)->getForm());
        QVERIFY(!open("Orvane", name + " 2")->getForm());
    }
    QCOMPARE(open("Orvane", "Startup Scope")->getEscapedName(), std::string("startup_scope"));
}

void CatalogueTest::configurationWidgetIsSetOnce() {
    const auto leaf = open();
    const auto messageOf = [&leaf](QWidget* widget) {
        const auto error = thrownBy<Brindle::Critical>([&] { leaf->setConfigurationWidget(widget); });
        return error ? error->what() : QString();
    };
    QCOMPARE(messageOf(nullptr), QString("Null configurationWidget"));
    auto* form = new QWidget;
    QCOMPARE(messageOf(form), QString());
    leaf->show();
    QVERIFY(form->isVisible() && leaf->isAncestorOf(form));
    QWidget second;
    QCOMPARE(messageOf(&second), QString("configurationWidget already set"));
}

void CatalogueTest::unusableDescriptions() {
    _prefix->write("empty", "");
    QCOMPARE(mkfifo(QFile::encodeName(_prefix->path("pipe")).constData(), 0600), 0);
    QFile huge("huge");
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(100LL * 1024 * 1024));
    const auto messageFor = [](const QString& filename) {
        const auto error = thrownBy<Brindle::Critical>([&filename] { IPLeaf(filename.toStdString()); });
        const bool isPlaced = error->getLocation().file == "src/bin/velmora/IPLeaf" &&
                              error->getField("filename") == filename.toStdString();
        return isPlaced ? QString(error->what()) : QStringLiteral("elsewhere");
    };
    QCOMPARE(messageFor(""), "Empty filename");
    for (const char* unusable : {"absent", "share", "pipe"})
        QCOMPARE(messageFor(unusable), "Unable to open description file");
    QCOMPARE(messageFor("empty"), "Name not specified");
    _prefix->write("latin", "name caf\xe9\ncategory A\ncompany X\nvariants V\n");
    QCOMPARE(messageFor("latin"), "Line is not UTF-8, save the file in this encoding");
    QCOMPARE(messageFor("huge"), "Description file is larger than 16 MiB");
}

void CatalogueTest::formShareComesFromTheSettings() {
    const std::string filename = _prefix->addBridge("").toStdString();
    const auto shareOf = [&filename] {
        IPLeaf leaf(filename);
        leaf.resize(400, 2000);
        leaf.show();
        const QList<int> sizes = leaf.findChild<QSplitter*>()->sizes();
        return 100.0 * sizes.at(1) / (sizes.at(0) + sizes.at(1));
    };
    QVERIFY(qAbs(shareOf() - 50) < 1);
    QSettings().setValue("size", "70");
    QVERIFY(qAbs(shareOf() - 70) < 1);
}

void CatalogueTest::descriptionPage() {
    QTcpServer server; // which the page must not reach
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QByteArray image = "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/picture.png";
    _prefix->write("share/velmora/X/y/page.html",
                   "<body><p><a href='other.html'>Hello</a></p><script>document.body.innerHTML='run'</script>"
                   "<img src='" +
                       image + "'></body>");
    const auto textOf = [](const IPLeaf& leaf) {
        return leaf.findChild<QWebView*>()->page()->mainFrame()->toPlainText().trimmed();
    };
    const auto leaf = open("Orvane", "Any", "html page.html\n");
    leaf->show();
    QTRY_COMPARE(textOf(*leaf), QStringLiteral("Hello"));
    const auto* view = leaf->findChild<QWebView*>();
    QCOMPARE(view->page()->linkDelegationPolicy(), QWebPage::DelegateAllLinks);
    for (const auto attribute : {QWebSettings::JavascriptEnabled, QWebSettings::JavaEnabled,
                                 QWebSettings::PluginsEnabled, QWebSettings::LocalStorageEnabled}) {
        QVERIFY(!view->settings()->testAttribute(attribute));
    }
    QVERIFY(!server.waitForNewConnection(300));

    // As the file system means it, not as the text reads.
    QVERIFY(QDir().mkpath(_prefix->path("elsewhere/deep")));
    QVERIFY(QFile::link(_prefix->path("elsewhere/deep"), _prefix->path("share/velmora/X/y/link")));
    _prefix->write("elsewhere/page.html", "<body>Elsewhere</body>");
    const auto linked = open("Orvane", "Any", "html link/../page.html\n");
    linked->show();
    QTRY_COMPARE(textOf(*linked), QStringLiteral("Elsewhere"));
    ConsoleRecorder recorder;
    QCOMPARE(mkfifo(QFile::encodeName(_prefix->path("share/velmora/X/y/pipe")).constData(), 0600), 0);
    _prefix->write("share/velmora/X/y/deep.html", QByteArray("<b>").repeated(200'000));
    _prefix->write("share/velmora/X/y/large.html", QByteArray(2'000'000, 'x'));
    for (const char* name : {"pipe", "deep.html", "large.html"}) {
        const auto unusable = open("Orvane", "Any", QByteArray("html ") + name + "\n");
        unusable->show();
        QTRY_COMPARE(textOf(*unusable), QStringLiteral("Description file cannot be shown"));
        QVERIFY(recorder.take().join('\n').startsWith("E: Unable to show description page (filename: "));
    }
    _prefix->write("share/velmora/X/y/piped.html", "<body>Piped<img src='pipe'></body>");
    const auto piped = open("Orvane", "Any", "html piped.html\n");
    piped->show();
    QTRY_COMPARE(textOf(*piped), QStringLiteral("Piped"));
    const auto without = open("Orvane", "Any", "html absent.html\n");
    QTRY_COMPARE(textOf(*without), QStringLiteral("Description file does not exists"));
    without->onLinkClicked(QUrl("nonsense:/some/where"));
    QCOMPARE(recorder.lines(), QStringList({"E: Could not open link /some/where."}));
}

void CatalogueTest::pagesAreLegible_data() {
    const TestTable<int> table("theme");
    for (const Brindle::Theme& theme : Brindle::Theme::getThemes())
        table.row(qPrintable(theme.getName()), theme.getCode());
}

/// The colours of the shipped figures, which hold texts, and what is selected, as they are shown.
void CatalogueTest::pagesAreLegible() {
    QFETCH(int, theme);
    const auto earlier = std::exchange(Brindle::theme, static_cast<Brindle::Theme::Code>(theme));
    QSet<QString> fills;
    for (QDirIterator figures(VELMORA_EXAMPLES "/../../share/velmora", {"*.svg"}, QDir::Files,
                              QDirIterator::Subdirectories);
         figures.hasNext();) {
        static const QRegularExpression fill(R"(fill(?:: |=")(#\w{6}))");
        for (auto found = fill.globalMatch(readFile(figures.next())); found.hasNext();)
            fills += found.next().captured(1);
    }
    QVERIFY(!fills.isEmpty());
    QByteArray html = "<p style='margin-top: 60px'>selected text</p>";
    for (const QString& fill : fills) {
        html += QString("<img src='%1.svg' style='position: absolute; top: 0; left: %2px'>")
                    .arg(fill.mid(1))
                    .arg(50 * html.count("<img"))
                    .toLatin1();
        _prefix->write("share/velmora/X/y/" + fill.mid(1) + ".svg",
                       "<svg xmlns='http://www.w3.org/2000/svg' width='50' height='50'>"
                       "<rect width='50' height='50' fill='" +
                           fill.toLatin1() + "'/></svg>");
    }
    _prefix->write("share/velmora/X/y/page.html", html);
    const auto leaf = open("Orvane", "Any", "html page.html\n");
    auto* view = leaf->findChild<QWebView*>();
    const QSignalSpy loaded(view, &QWebView::loadFinished);
    leaf->resize(600, 400);
    leaf->show();
    QTRY_COMPARE(loaded.count(), 1);
    const QImage shown = view->grab().toImage();
    for (int place = 0; place < fills.size(); ++place) {
        const QColor fill = shown.pixelColor(50 * place + 25, 25);
        QVERIFY2(Contrast::between(fill, Brindle::theme.getColor("surface")) >= Contrast::legibleText,
                 qPrintable(fill.name()));
    }
    view->triggerPageAction(QWebPage::SelectAll);
    const QImage image = view->grab().toImage();
    const QColor ground = image.pixelColor(200, 70);
    double ink = 1; // the best contrast in the line of text
    for (int x = 8; x < 100; ++x)
        ink = std::max(ink, Contrast::between(image.pixelColor(x, 70), ground));
    QVERIFY(ground != Brindle::theme.getColor("surface") && ink >= Contrast::legibleText);
    Brindle::theme = earlier;
}

/// Links to sections and other IPs, zoom, and finding a text.
void CatalogueTest::pagesAreRead() {
    const QByteArray sections = "<h1>One</h1><h2>First</h2><div style='height:2000px'>word</div><h2>Second</h2>";
    _prefix->write("share/velmora/X/One/page.html", sections + "<a href='../Two/page.html'>Two</a>");
    _prefix->write("share/velmora/X/Two/page.html", "<h1>Two</h1>");
    for (const char* name : {"One", "Two"})
        _prefix->addIP(QString("X/") + name, description(name, "C", "X", "V") + "html page.html\n");
    browse({});
    IPLeaf* leaf = nullptr;
    for (IPLeaf* candidate : _handler->getIPLeaves())
        leaf = candidate->getName() == "One" ? candidate : leaf;
    _folio->showIP(leaf);
    show();
    auto* view = leaf->findChild<QWebView*>();
    const QWebFrame* frame = view->page()->mainFrame();
    QTRY_COMPARE(frame->findAllElements("p.sections a").count(), 2);
    const QWebElement link = frame->findAllElements("p.sections a").last();
    leaf->onLinkClicked(frame->baseUrl().resolved(QUrl(link.attribute("href"))));
    QVERIFY(frame->scrollPosition().y() > 1000);
    view->setFocus();
    QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
    auto* find = view->findChild<QLineEdit*>("findBar");
    QVERIFY(find && find->hasFocus());
    QTest::keyClicks(find, "WORD");
    QCOMPARE(view->selectedText(), QString("word"));
    QTest::keyClick(find, Qt::Key_Escape);
    QVERIFY(view->hasFocus());
    QTest::keyClick(view, Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(view->zoomFactor() > 1);
    QTest::keyClick(view, Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(view->zoomFactor(), 1.0);
    leaf->onLinkClicked(QUrl::fromLocalFile(_prefix->path("share/velmora/X/Two/page.html")));
    QCOMPARE(shown().section('|', 0, 0), QString("Two"));
}

void CatalogueTest::treeFollowsTheCatalogue() {
    browse({"One|DSP/Filters/FIR|B A", "Two|Interface|A", "Three|DSP|C", "Four|DSP/Filters/FIR|C"});
    QAbstractItemModelTester tester(tree()->model());
    QCOMPARE(shownRows(),
             QStringList({"0:DSP", "1:Filters", "2:FIR", "3:One", "3:Four", "1:Three", "0:Interface", "1:Two"}));
    const QStandardItem* dsp = tree()->getModel()->item(0);
    const QStandardItem* fir = dsp->child(0)->child(0);
    QCOMPARE(fir->data(Qt::UserRole + 1).toString(), QStringLiteral("DSP/Filters/FIR"));
    QVERIFY(!fir->data(Qt::UserRole).isValid() && !fir->data(Qt::UserRole + 2).isValid());
    const QStandardItem* one = fir->child(0);
    QCOMPARE(one->data(Qt::UserRole).value<IPLeaf*>(), _handler->getIPLeaves().getFirst());
    QCOMPARE(one->data(Qt::UserRole + 1).toString(), QStringLiteral("DSP/Filters/FIR"));
    QCOMPARE(one->data(Qt::UserRole + 2).toString(), QStringLiteral("B,A"));
    QCOMPARE(one->flags(), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    const auto itemsOf = [this](const char* name) {
        const auto* combo = _folio->findChild<QComboBox*>(name);
        QStringList items;
        for (int index = 0; index < combo->count(); ++index)
            items += combo->itemData(index, Qt::AccessibleDescriptionRole).toString() + combo->itemText(index);
        return items;
    };
    QCOMPARE(itemsOf("variantCombo"), QStringList({"All", "separator", "B", "A", "C"}));
    QCOMPARE(itemsOf("categoryCombo"), QStringList({"All", "separator", "DSP", "Interface"}));
}

void CatalogueTest::filters_data() {
    const TestTable<QString, QString, QString, QString> table("text", "variant", "category", "rows");
    const auto row = [&table](const char* text, const char* variant, const char* category, const char* rows) {
        table.row(qPrintable(QString("'%1' for %2 in %3").arg(text, variant, category)), text, variant, category, rows);
    };
    row("", "All", "All", "DSP Filters mac_fir systolic FIR_tools DSP2 other dsp last Debug scope");
    row("", "FAM", "All", "DSP Filters mac_fir systolic DSP2 other dsp Debug"); // is part of another one
    row("", "C", "All", "DSP Filters DSP2 dsp Debug scope");                    // hides IPs but no node
    row("", "All", "DSP", "DSP Filters mac_fir systolic FIR_tools DSP2 other"); // a beginning
    row("", "All", "dsp", "dsp last");
    row(" FIR mac", "All", "All", "DSP Filters mac_fir");      // every word
    row("filt", "All", "All", "DSP Filters mac_fir systolic"); // begins a word of the category
    row("ilt", "All", "All", "");
    row(".*", "All", "All", ""); // the text itself, no pattern
}

void CatalogueTest::filters() {
    QFETCH(QString, text);
    QFETCH(QString, variant);
    QFETCH(QString, category);
    browse({"mac fir|DSP/Filters|FAMILY", "systolic|DSP/Filters|FAMILY B", "FIR tools|DSP|B", "other|DSP2|FAM",
            "last|dsp|c", "scope|Debug|B C"});
    QAbstractItemModelTester tester(tree()->model());
    const QStringList everything = shownRows();
    choose("variantCombo", variant);
    QTest::keyClicks(search(), text);
    choose("categoryCombo", category);
    QStringList names;
    for (const QString& row : shownRows())
        names += row.mid(2).replace(' ', '_');
    QTEST(names.join(' '), "rows");
    choose("variantCombo", "All");
    QTest::keyClick(search(), Qt::Key_Escape);
    choose("categoryCombo", "All");
    QCOMPARE(shownRows(), everything);
}

void CatalogueTest::selectionAndSearchShowPages() {
    browse({"One|A/B|V", "Two|A|V", "Twenty|B|V"});
    show();
    const auto click = [this](const QModelIndex& index) {
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, tree()->visualRect(index).center());
        return shown();
    };
    const QModelIndex category = tree()->model()->index(0, 0);
    QCOMPARE(tree()->selectionModel()->selectedIndexes().first().data().toString(), QStringLiteral("One"));
    QCOMPARE(shown(), QStringLiteral("One|"));
    QCOMPARE(click(tree()->model()->index(1, 0, category)), QStringLiteral("Two|Two"));
    QCOMPARE(click(category), QStringLiteral("Two|A"));
    QTest::keyClick(tree(), Qt::Key_Down);
    QTest::keyClick(tree(), Qt::Key_Down);
    QCOMPARE(shown(), QStringLiteral("One|One"));

    QTest::keyClick(tree(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(search()->hasFocus());
    const auto searchFor = [this](const char* text, Qt::Key key) {
        search()->clear();
        QTest::keyClicks(search(), text);
        QTest::keyClick(search(), key);
        return shown();
    };
    const QSignalSpy pageChanges(_folio->findChild<QStackedWidget*>("leafStack"), &QStackedWidget::currentChanged);
    QCOMPARE(searchFor("tw", Qt::Key_Shift), QStringLiteral("One|")); // no neighbour takes the place of what is hidden
    QVERIFY(tree()->selectionModel()->selectedIndexes().isEmpty());
    QCOMPARE(searchFor("o", Qt::Key_Shift), QStringLiteral("One|One")); // of one and two
    QCOMPARE(pageChanges.count(), 0);
    QCOMPARE(searchFor("tw", Qt::Key_Return), QStringLiteral("Two|Two")); // the first match
    QCOMPARE(searchFor("twe", Qt::Key_Enter), QStringLiteral("Twenty|Twenty"));
    QCOMPARE(searchFor("tw", Qt::Key_Return), QStringLiteral("Twenty|Twenty")); // which matches too
    QCOMPARE(searchFor("nothing", Qt::Key_Return), QStringLiteral("Twenty|"));
    QCOMPARE(searchFor("two", Qt::Key_Down), QStringLiteral("Two|Two"));
    QVERIFY(tree()->hasFocus());
    auto* erase = search()->findChild<QToolButton*>();
    QVERIFY(erase->isVisible());
    QTest::mouseClick(erase, Qt::LeftButton);
    QVERIFY(search()->hasFocus() && search()->text().isEmpty() && !erase->isVisible());
    QTest::keyClicks(search(), "t");
    QTest::keyClick(search(), Qt::Key_Escape);
    QCOMPARE(search()->text(), QString());
}

void CatalogueTest::filtersKeepClosedNodes() {
    browse({"One|A/B|V", "Two|C|V"});
    const auto openNodes = [this] {
        QStringList names;
        for (const char* path : {"A", "A/B", "C"}) {
            const QModelIndexList nodes =
                tree()->model()->match(tree()->model()->index(0, 0), Velmora::IPTreeView::CategoryRole, path, 1,
                                       Qt::MatchExactly | Qt::MatchRecursive);
            if (!nodes.isEmpty() && tree()->isExpanded(nodes.first()))
                names += path;
        }
        return names.join(' ');
    };
    QCOMPARE(openNodes(), "A A/B C");
    tree()->collapse(tree()->model()->index(0, 0));
    choose("categoryCombo", "C");
    choose("categoryCombo", "All");
    QCOMPARE(openNodes(), "A/B C");
    search()->setText("one");
    QCOMPARE(openNodes(), "A A/B");
    search()->setText("two");
    search()->clear();
    QVERIFY(openNodes().contains("C"));
    tree()->expand(tree()->model()->index(0, 0));
    choose("categoryCombo", "A");
    QCOMPARE(openNodes(), "A A/B");
}

VELMORA_TEST_MAIN(CatalogueTest)
#include "tst_catalogue.moc"
