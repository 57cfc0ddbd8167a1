#include <velmora/window/MainWindow.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/widgets/FileDrop.h>
#include <velmora/widgets/StyleSheetPause.h>
#include <velmora/window/EditMenu.h>
#include <velmora/window/FileMenu.h>
#include <velmora/window/Folio.h>
#include <velmora/workbench/Workbench.h>

#include <Brindle/core/Console.h>
#include <Quillon/Application.h>
#include <Quillon/ConsoleWidget.h>

#include <QCloseEvent>
#include <QFileInfo>
#include <QIcon>
#include <QMenuBar>
#include <QPixmap>
#include <QSettings>

namespace Velmora {

namespace {

// Of the state that outlives the program.
const QString geometryKey = QStringLiteral("geometry");
const QString windowStateKey = QStringLiteral("windowState");
const QString maximizedKey = QStringLiteral("isMaximized");
const QString splitterKey = QStringLiteral("consoleSplitter");

// Where Qt 5.15 keeps markers, versions and counts in a state, in bytes from its beginning and from its end.
constexpr int windowHead = 13; // up to the number of dock areas
constexpr int windowTail = 5;  // from the marker before the number of tool bar lines on
constexpr int splitterHead = 12;

/// True when the stored state has the shape of the present one. Qt believes the counts in any other, and would count to
/// two thousand million or ask for as much memory: the program would not start again.
bool hasShape(const QByteArray& stored, const QByteArray& present, int head, int tail) {
    return stored.size() == present.size() && stored.left(head) == present.left(head) &&
           stored.right(tail) == present.right(tail);
}

} // namespace

MainWindow::MainWindow() {
    setWindowTitle(Quillon::application->applicationName());
    setWindowIcon(QIcon(QPixmap(QStringLiteral(":/Brindle/rocket.png"))));
    {
        const StyleSheetPause pause;
        _ipHandler = IPHandler::create(this);
        createWidgets();
    }
    resize(1000, 600);
    loadSettings();
    show();
    connect(new FileDrop(this), &FileDrop::dropped, _fileMenu, &FileMenu::open);
    _folio->setLeaf(_folio->getCurrentIndex()); // the focus is on the button of the page that is shown
    connect(_folio, &Folio::shownIPChanged, this, &MainWindow::updateTitle);
    connect(_fileMenu, &FileMenu::filenameChanged, this, &MainWindow::updateTitle);
}

/// The IP and its file, if the user sees one.
void MainWindow::updateTitle() {
    const IPLeaf* leaf = _folio->getShownIP();
    QStringList parts;
    if (leaf)
        parts << QString::fromStdString(leaf->getName()) << QFileInfo(_fileMenu->getFilename(*leaf)).fileName();
    parts << Quillon::application->applicationName();
    parts.removeAll(QString());
    setWindowTitle(parts.join(QStringLiteral(" - ")));
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) { // the window has the size that it starts with
        _consoleSplitter->setSizes(_consoleSplitter->sizes());
        _consoleSplitter->setStretchFactor(0, 1); // the console keeps its height from now on
    }
    return QMainWindow::event(event);
}

void MainWindow::createWidgets() {
    _consoleSplitter = new QSplitter(Qt::Vertical, this);
    _consoleSplitter->setObjectName(QStringLiteral("ConsoleSplitter"));

    _folio = new Folio(this);
    _folio->setObjectName(QStringLiteral("Folio"));
    _consoleSplitter->addWidget(_folio);

    auto* console = new Quillon::ConsoleWidget(this);
    console->setObjectName(QStringLiteral("Console"));
    _consoleSplitter->addWidget(console);

    _consoleSplitter->setSizes({7500, 2500});
    setCentralWidget(_consoleSplitter);

    _fileMenu = new FileMenu(_folio, this);
    menuBar()->addMenu(_fileMenu);
    menuBar()->addMenu(new EditMenu(_folio, this));

    _workbench = new Workbench(this);
    connect(_folio, &Folio::shownIPChanged, this, [this] { _workbench->show(_folio->getShownIP()); });
    _workbench->show(_folio->getShownIP());
}

void MainWindow::loadSettings() {
    const QSettings settings;
    if (!settings.isWritable()) {
        Brindle::console.remark("Settings cannot be stored in " + settings.fileName().toStdString() +
                                ": make it writable, or what you change and fill in is lost when the program ends.");
    }
    if (settings.value(maximizedKey).toBool()) {
        showMaximized();
    } else {
        restoreGeometry(settings.value(geometryKey).toByteArray());
        show();
    }
    const QByteArray window = settings.value(windowStateKey).toByteArray();
    if (hasShape(window, saveState(0), windowHead, windowTail))
        restoreState(window, 0);
    const QByteArray splitter = settings.value(splitterKey).toByteArray();
    if (hasShape(splitter, _consoleSplitter->saveState(), splitterHead, 0))
        _consoleSplitter->restoreState(splitter);
}

void MainWindow::saveSettings() {
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(windowStateKey, saveState(0));
    settings.setValue(maximizedKey, isMaximized());
    settings.setValue(splitterKey, _consoleSplitter->saveState());
    _folio->save(settings);
    _fileMenu->save(settings);
    settings.sync();
    if (settings.status() == QSettings::AccessError)
        Brindle::console.error("Unable to store the settings in " + settings.fileName().toStdString());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    saveSettings();
    QMainWindow::closeEvent(event);
}

} // namespace Velmora
