#include <Brindle/widgets/PathDialog.h>

#include <Brindle/widgets/FileIconProvider.h>

#include <QFileSystemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTreeView>

namespace Brindle {

namespace {

constexpr QSize initialSize(760, 480); // pixels
constexpr QSize sidebarIconSize(16, 16);
constexpr int nameColumn = 0; // of the detailed list

/// True when the name ends in what a user means as an extension: "fir.txt" does, "fir_v1.2" does not.
bool hasExtension(const QString& name) {
    static const QRegularExpression pattern(QStringLiteral("\\.[A-Za-z]\\w*$"));
    return pattern.match(name).hasMatch();
}

} // namespace

PathDialog::PathDialog(QWidget* parent, const QString& caption, const QString& filter)
    : QFileDialog(parent, caption, QString(), filter) {
    setOption(QFileDialog::DontUseNativeDialog);
    static FileIconProvider icons; // outlives the dialog, whose thread that reads folders asks it too
    setIconProvider(&icons);
    resize(initialSize);
    findChild<QListView*>(QStringLiteral("sidebar"))->setIconSize(sidebarIconSize);
    QHeaderView* columns = findChild<QTreeView*>(QStringLiteral("treeView"))->header();
    columns->setSectionResizeMode(QHeaderView::ResizeToContents);
    columns->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
}

QLineEdit* PathDialog::getNameEdit() const {
    return findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

QString PathDialog::getTypedPath() const {
    QString name = getNameEdit()->text();
    if (name == QLatin1String("~") || name.startsWith(QLatin1String("~/")))
        name.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(directory().absoluteFilePath(name));
}

QString PathDialog::getCompletedPath(const QString& path) const {
    const QString extension = getExtension(selectedNameFilter());
    if (extension.isEmpty() || hasExtension(path))
        return path;
    return path.endsWith(QLatin1Char('.')) ? path + extension : path + QLatin1Char('.') + extension;
}

QString PathDialog::getExtension(const QString& filter) {
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)"));
    return pattern.match(filter).captured(1);
}

bool PathDialog::enterFolder() {
    QLineEdit* nameEdit = getNameEdit();
    if (const QString folder = getSelectedFolder(); !folder.isEmpty() && !nameEdit->hasFocus()) {
        setDirectory(folder);
        nameEdit->setFocus();
        return true;
    }
    const QString path = getTypedPath();
    if (nameEdit->text().isEmpty() || !QFileInfo(path).isDir())
        return false;
    setDirectory(path);
    nameEdit->clear();
    return true;
}

void PathDialog::refuse(const QString& reason) {
    QMessageBox::warning(this, windowTitle(), reason);
    getNameEdit()->setFocus();
    getNameEdit()->selectAll();
}

QString PathDialog::getSelectedFolder() const {
    // while a name is typed QFileDialog selects rows of its own, in other folders too
    for (const QModelIndex& row : findChild<QListView*>(QStringLiteral("listView"))->selectionModel()->selectedRows()) {
        const QFileInfo file(row.data(QFileSystemModel::FilePathRole).toString());
        if (file.isDir() && file.dir() == directory())
            return file.filePath();
    }
    return QString();
}

} // namespace Brindle
