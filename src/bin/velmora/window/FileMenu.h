#pragma once

#include <QHash>
#include <QMenu>
#include <QStringList>

namespace Velmora {

class Configuration;
class Folio;
class IPLeaf;

/// The File menu: loads and saves the configuration of the IP that is shown, and closes the window. What is wrong with
/// a file is one error on the console, and then nothing has changed.
class FileMenu : public QMenu {
    Q_OBJECT

public:
    /// Both are kept, not owned; dialogs belong to the window.
    FileMenu(Folio* folio, QWidget* window);

public Q_SLOTS:
    /// Loads each file into the form of the IP that it is for and shows that IP.
    void open(const QStringList& filenames);

private Q_SLOTS:
    void onLoad();
    void onSave();
    void onShownIPChanged();

private:
    QAction* addEntry(const QString& text, const char* name, const QKeySequence& shortcut);
    void openFile(const QString& filename);
    void load(IPLeaf& leaf, const Configuration& configuration, const QString& filename);
    /// The file that the configuration of the IP was last loaded from or saved in, else one named after its entity.
    QString proposeFilename(const IPLeaf& leaf) const;
    void remember(const IPLeaf& leaf, const QString& filename);

    Folio* const _folio;
    QWidget* const _window;
    QAction* _loadAction = nullptr;
    QAction* _saveAction = nullptr;
    QHash<const IPLeaf*, QString> _filenames; // last used in this run
    QString _folder;                          // of the last file
};

} // namespace Velmora
