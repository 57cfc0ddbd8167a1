#pragma once

#include <velmora/catalogue/IPHandler.h>

#include <QMainWindow>
#include <QSplitter>

namespace Velmora {

class FileMenu;
class Folio;
class Workbench;

/// The program's window: the folio of pages above the console, and the menus; configurations can also be dropped on the
/// window. It keeps its geometry, state and splitter between runs.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Builds the catalogue, then the window, and shows it. Throws what the catalogue throws.
    MainWindow();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void createWidgets();
    void loadSettings();
    void saveSettings();
    void updateTitle();

    Quillon::Owned<IPHandler> _ipHandler;
    Folio* _folio = nullptr;
    FileMenu* _fileMenu = nullptr;
    Workbench* _workbench = nullptr;
    QSplitter* _consoleSplitter = nullptr;
};

} // namespace Velmora
