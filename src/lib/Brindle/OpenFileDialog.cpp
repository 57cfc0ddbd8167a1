#include <Brindle/OpenFileDialog.h>

#include <Brindle/PathParts.h>

#include <QLineEdit>

namespace Brindle {

OpenFileDialog::OpenFileDialog(QWidget* parent, const QString& caption, const QString& path, const QString& filter)
    : PathDialog(parent, caption, filter) {
    setAcceptMode(QFileDialog::AcceptOpen);
    setFileMode(QFileDialog::ExistingFile);
    setDirectory(PathParts::split(path).folder);
    if (QFileInfo(path).isFile())
        selectFile(QFileInfo(path).fileName());
}

void OpenFileDialog::accept() {
    const QString path = getTypedPath();
    if (!getNameEdit()->text().isEmpty() && !QFileInfo::exists(path))
        getNameEdit()->setText(getCompletedPath(path));
    PathDialog::accept();
}

} // namespace Brindle
