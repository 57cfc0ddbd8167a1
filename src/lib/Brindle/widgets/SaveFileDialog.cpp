#include <Brindle/widgets/SaveFileDialog.h>

#include <Brindle/widgets/PathParts.h>

#include <QLineEdit>

namespace Brindle {

SaveFileDialog::SaveFileDialog(QWidget* parent, const QString& caption, const QString& path, const QString& filter)
    : PathDialog(parent, caption, filter) {
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    const PathParts parts = PathParts::split(path);
    setDirectory(parts.folder);
    const QString name = QFileInfo(path).fileName();
    const bool isOnlyExtension = name == QLatin1Char('.') + getExtension(filter);
    if (!isOnlyExtension)
        selectFile(name);
}

void SaveFileDialog::accept() {
    if (enterFolder() || getNameEdit()->text().isEmpty())
        return;
    const QString path = getTypedPath();
    if (const QFileInfo folder(QFileInfo(path).path()); !folder.isDir()) {
        refuse(tr("The folder %1 does not exist.\nChoose another folder, or create it first.")
                   .arg(QDir::toNativeSeparators(folder.filePath())));
        return;
    }
    getNameEdit()->setText(getCompletedPath(path));
    PathDialog::accept();
}

} // namespace Brindle
