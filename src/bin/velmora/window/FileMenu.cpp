#include <velmora/window/FileMenu.h>

#include <velmora/catalogue/ConfigurationOwner.h>
#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/configuration/ConfigurationFile.h>
#include <velmora/settings/SettingsKeys.h>
#include <velmora/widgets/CellEdit.h>
#include <velmora/window/Folio.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/widgets/FileDialog.h>

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>

namespace Velmora {

namespace {

using Brindle::console;

const QString recentKey = QStringLiteral("recentConfigurations");
constexpr int mostRecent = 8;

/// The configurations that come with the installation.
QStringList getExamples() {
    const QDir folder(qEnvironmentVariable("ORVANE_PREFIX") + "/share/doc/velmora/docs/examples");
    QStringList filenames;
    for (const QString& name : folder.entryList({QStringLiteral("*.velmora")}, QDir::Files, QDir::Name))
        filenames += folder.filePath(name);
    return filenames;
}

/// Shows what goes wrong in the work.
void runShowingErrors(const std::function<void()>& work) {
    try {
        work();
    } catch (const Brindle::Exception& exception) {
        console.error(exception);
    }
}

/// The IP of the catalogue that a configuration is for. Throws Brindle::Critical with the fields "filename" and "line"
/// when none with a form is.
IPLeaf& findIP(const Configuration& configuration) {
    std::vector<IPLeaf*> leaves;
    std::ranges::copy_if(ipHandler->getIPLeaves(), std::back_inserter(leaves), &IPLeaf::mayHaveForm);
    const auto owner = findOwner(leaves, configuration, &IPLeaf::getDescription);
    if (owner == leaves.end() || !(*owner)->getForm()) {
        configuration.refuseIP("No installed IP with a form is " +
                               getIPLabel(configuration.getName(), configuration.getCompany()) +
                               ", correct the name or install the IP");
    }
    return **owner;
}

} // namespace

FileMenu::FileMenu(Folio* folio, QWidget* window)
    : QMenu(tr("&File"), window), _folio(folio), _window(window), _folder(QDir::currentPath()) {
    setObjectName(QStringLiteral("fileMenu"));
    const QAction* loadAction = addEntry(tr("&Load configuration..."), "loadConfiguration", QKeySequence::Open);
    addFiles(tr("Open &recent"), "recentMenu", [this] { return _recentFilenames; });
    addFiles(tr("&Examples"), "examplesMenu", getExamples);
    _saveAction = addEntry(tr("&Save configuration..."), "saveConfiguration", QKeySequence::Save);
    addSeparator();
    const QAction* quitAction = addEntry(tr("&Quit"), "quit", QKeySequence(tr("Ctrl+Q")));
    connect(loadAction, &QAction::triggered, this, &FileMenu::onLoad);
    connect(_saveAction, &QAction::triggered, this, &FileMenu::onSave);
    connect(quitAction, &QAction::triggered, window, &QWidget::close);
    connect(folio, &Folio::shownIPChanged, this, &FileMenu::onShownIPChanged);
    onShownIPChanged();
    _recentFilenames = QSettings().value(recentKey).toStringList().mid(0, mostRecent);
}

QAction* FileMenu::addEntry(const QString& text, const char* name, const QKeySequence& shortcut) {
    QAction* action = addAction(text);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    return action;
}

/// A menu of files, which are looked for whenever it opens; each entry loads one.
QMenu* FileMenu::addFiles(const QString& title, const char* name, const std::function<QStringList()>& getFilenames) {
    QMenu* menu = addMenu(title);
    menu->setObjectName(QLatin1String(name));
    menu->setToolTipsVisible(true);
    const auto fill = [this, menu, getFilenames] {
        menu->clear();
        for (const QString& filename : getFilenames()) {
            QAction* action = menu->addAction(QFileInfo(filename).fileName().replace('&', QLatin1String("&&")));
            action->setToolTip(filename);
            connect(action, &QAction::triggered, this, [this, filename] { open({filename}); });
        }
        if (menu->isEmpty())
            menu->addAction(tr("None"))->setEnabled(false);
    };
    connect(menu, &QMenu::aboutToShow, this, fill);
    return menu;
}

void FileMenu::save(QSettings& settings) const {
    if (!_recentFilenames.isEmpty())
        settings.setValue(recentKey, _recentFilenames);
}

void FileMenu::onShownIPChanged() {
    const IPLeaf* leaf = _folio->getShownIP();
    _saveAction->setEnabled(leaf && leaf->getForm());
}

void FileMenu::onLoad() {
    const IPLeaf* leaf = _folio->getShownIP();
    const QString proposal = leaf && leaf->getForm() ? proposeFilename(*leaf) : _folder + "/";
    const QString filename = Brindle::FileDialog::getOpenFileName(
        _window, tr("Load configuration"), proposal, getConfigurationFilter() + ";;" + tr("All files (*)"));
    if (!filename.isEmpty())
        open({filename});
}

void FileMenu::onSave() {
    finishCellEdit();
    const IPLeaf& leaf = *_folio->getShownIP();
    const QString filename = Brindle::FileDialog::getSaveFileName(_window, tr("Save configuration"),
                                                                  proposeFilename(leaf), getConfigurationFilter());
    if (filename.isEmpty())
        return;
    runShowingErrors([&] {
        writeConfigurationFile(filename, leaf.getConfiguration());
        remember(leaf, filename);
        console.print("Configuration saved in %", filename.toStdString());
    });
}

void FileMenu::open(const QStringList& filenames) {
    for (const QString& filename : filenames)
        runShowingErrors([&] { openFile(filename); });
}

void FileMenu::openFile(const QString& filename) {
    const Configuration configuration = readConfigurationFile(filename);
    IPLeaf& leaf = findIP(configuration);
    load(leaf, configuration, filename);
    _folio->showIP(&leaf);
}

void FileMenu::load(IPLeaf& leaf, const Configuration& configuration, const QString& filename) {
    leaf.setConfiguration(configuration);
    remember(leaf, filename);
    console.print("Configuration loaded from %", filename.toStdString());
}

QString FileMenu::proposeFilename(const IPLeaf& leaf) const {
    if (const auto known = _filenames.find(&leaf); known != _filenames.end())
        return *known;
    const Configuration configuration = leaf.getConfiguration();
    const Configuration::Entry* entity = configuration.find(SettingsKeys::entity.toStdString());
    std::string name = entity ? configuration.getText(*entity) : std::string();
    if (name.empty())
        name = leaf.getEscapedName();
    return _folder + "/" + QString::fromStdString(name).replace('/', '_') + ".velmora";
}

void FileMenu::remember(const IPLeaf& leaf, const QString& filename) {
    _filenames[&leaf] = filename;
    const QFileInfo file(filename);
    _folder = file.absolutePath();
    _recentFilenames.removeAll(file.absoluteFilePath());
    _recentFilenames.prepend(file.absoluteFilePath());
    _recentFilenames = _recentFilenames.mid(0, mostRecent);
    Q_EMIT filenameChanged();
}

} // namespace Velmora
