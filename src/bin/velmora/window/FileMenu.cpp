#include <velmora/window/FileMenu.h>

#include <velmora/catalogue/ConfigurationOwner.h>
#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/configuration/ConfigurationFile.h>
#include <velmora/settings/SettingsKeys.h>
#include <velmora/window/Folio.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/widgets/FileDialog.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <functional>
#include <iterator>
#include <vector>

namespace Velmora {

namespace {

using Brindle::console;

/// Shows what goes wrong in the work.
void runShowingErrors(const std::function<void()>& work) {
    try {
        work();
    } catch (const Brindle::Exception& exception) {
        console.error(exception);
    }
}

/// A cell that is being edited takes what was typed, as if the user had clicked elsewhere: a shortcut does not end it.
void finishCellEdit() {
    const QWidget* editor = QApplication::focusWidget();
    for (QWidget* ancestor = editor ? editor->parentWidget() : nullptr; ancestor; ancestor = ancestor->parentWidget()) {
        if (qobject_cast<QAbstractItemView*>(ancestor))
            ancestor->setFocus();
    }
}

/// The IP of the catalogue that a configuration is for. Throws Brindle::Critical with the fields "filename" and "line"
/// when none with a form is.
IPLeaf& findIP(const Configuration& configuration) {
    std::vector<IPLeaf*> leaves;
    std::ranges::copy_if(ipHandler->getIPLeaves(), std::back_inserter(leaves), &IPLeaf::getForm);
    const auto owner = findOwner(leaves, configuration, &IPLeaf::getDescription);
    if (owner == leaves.end()) {
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
    _loadAction = addEntry(tr("&Load configuration..."), "loadConfiguration", QKeySequence::Open);
    _saveAction = addEntry(tr("&Save configuration..."), "saveConfiguration", QKeySequence::Save);
    addSeparator();
    const QAction* quitAction = addEntry(tr("&Quit"), "quit", QKeySequence(tr("Ctrl+Q")));
    connect(_loadAction, &QAction::triggered, this, &FileMenu::onLoad);
    connect(_saveAction, &QAction::triggered, this, &FileMenu::onSave);
    connect(quitAction, &QAction::triggered, window, &QWidget::close);
    connect(folio, &Folio::shownIPChanged, this, &FileMenu::onShownIPChanged);
    onShownIPChanged();
}

QAction* FileMenu::addEntry(const QString& text, const char* name, const QKeySequence& shortcut) {
    QAction* action = addAction(text);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    return action;
}

void FileMenu::onShownIPChanged() {
    const IPLeaf* leaf = _folio->getShownIP();
    for (QAction* action : {_loadAction, _saveAction})
        action->setEnabled(leaf && leaf->getForm());
}

void FileMenu::onLoad() {
    IPLeaf& leaf = *_folio->getShownIP();
    const QString filename =
        Brindle::FileDialog::getOpenFileName(_window, tr("Load configuration"), proposeFilename(leaf),
                                             getConfigurationFilter() + ";;" + tr("All files (*)"));
    if (!filename.isEmpty())
        runShowingErrors([&] { load(leaf, readConfigurationFile(filename), filename); });
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
    finishCellEdit();
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
    _folder = QFileInfo(filename).absolutePath();
}

} // namespace Velmora
