#pragma once

#include <QHash>
#include <QMenu>
#include <QStringList>

#include <functional>

QT_BEGIN_NAMESPACE
class QSettings;
QT_END_NAMESPACE

namespace Velmora {

class Configuration;
class Folio;
class IPLeaf;

/// The File menu: loads configurations, those used last and the shipped examples among them, saves that of the IP that
/// is shown, and closes the window. Loading shows the IP that the configuration is for. What is wrong with a file is
/// one error on the console, and then nothing has changed.
class FileMenu : public QMenu {
    Q_OBJECT

public:
    /// Both are kept, not owned; dialogs belong to the window.
    FileMenu(Folio* folio, QWidget* window);

    /// The file that the configuration of the IP was last loaded from or saved in in this run; empty when there is
    /// none.
    QString getFilename(const IPLeaf& leaf) const { return _filenames.value(&leaf); }
    /// Stores which files were used last.
    void save(QSettings& settings) const;

Q_SIGNALS:
    /// A configuration was loaded or saved.
    void filenameChanged();

public Q_SLOTS:
    /// Loads each file into the form of the IP that it is for and shows that IP.
    void open(const QStringList& filenames);

private Q_SLOTS:
    void onLoad();
    void onSave();
    void onShownIPChanged();

private:
    QAction* addEntry(const QString& text, const char* name, const QKeySequence& shortcut);
    QMenu* addFiles(const QString& title, const char* name, const std::function<QStringList()>& getFilenames);
    void openFile(const QString& filename);
    void load(IPLeaf& leaf, const Configuration& configuration, const QString& filename);
    /// The file that the configuration of the IP was last loaded from or saved in, else one named after its entity.
    QString proposeFilename(const IPLeaf& leaf) const;
    void remember(const IPLeaf& leaf, const QString& filename);

    Folio* const _folio;
    QWidget* const _window;
    QAction* _saveAction = nullptr;
    QHash<const IPLeaf*, QString> _filenames; // last used in this run
    QString _folder;                          // of the last file
    QStringList _recentFilenames;             // the last one first; of earlier runs too
};

} // namespace Velmora
