#include <Brindle/widgets/FileMenus.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/Theme.h>

#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QUrl>

namespace Brindle {

namespace {

void open(const QString& path) {
    if (!QFileInfo::exists(path) || !QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        console.error("Could not open " + path.toStdString() + ".");
}

void addFileMenu(QMenu& menu, const QString& filename) {
    const QFileInfo file(filename);
    QMenu* entry = menu.addMenu(theme.getIcon("file"), file.fileName().replace('&', QStringLiteral("&&")));
    entry->setToolTip(filename);
    QObject::connect(entry->addAction(QObject::tr("&Show")), &QAction::triggered, entry,
                     [filename] { open(filename); });
    QObject::connect(entry->addAction(QObject::tr("&Open folder")), &QAction::triggered, entry,
                     [folder = file.path()] { open(folder); });
    QObject::connect(entry->addAction(QObject::tr("&Copy path")), &QAction::triggered, entry,
                     [filename] { QGuiApplication::clipboard()->setText(filename); });
}

} // namespace

void addFileMenus(QMenu& menu, const std::vector<std::string>& filenames) {
    for (const std::string& filename : filenames)
        addFileMenu(menu, QString::fromStdString(filename));
}

} // namespace Brindle
