#include <Brindle/widgets/OpenFileDialog.h>

#include <Brindle/widgets/PathParts.h>

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
    if (enterFolder() || getNameEdit()->text().isEmpty())
        return;
    const QString path = getTypedPath();
    // a whole path, since QFileDialog prefers a row that it selected by itself to a relative one
    getNameEdit()->setText(QFileInfo::exists(path) ? path : getCompletedPath(path));
    PathDialog::accept();
}

} // namespace Brindle
