#include <Brindle/widgets/DirectoryDialog.h>

#include <Brindle/widgets/PathParts.h>

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

namespace Brindle {

namespace {

/// The part of the path that is a file where a folder is wanted; empty when there is none.
QString fileInTheWay(const QString& path) {
    for (QFileInfo part(path); !part.isDir(); part = QFileInfo(part.absolutePath())) {
        if (part.exists())
            return part.absoluteFilePath();
    }
    return QString();
}

} // namespace

DirectoryDialog::DirectoryDialog(QWidget* parent, const QString& caption, const QString& path)
    : PathDialog(parent, caption, QString()) {
    setFileMode(QFileDialog::Directory);
    setOption(QFileDialog::ShowDirsOnly);
    setLabelText(QFileDialog::Accept, tr("&Choose"));
    const PathParts parts = PathParts::split(path);
    setDirectory(parts.folder);
    QLineEdit* nameEdit = getNameEdit();
    connect(nameEdit, &QLineEdit::textChanged, this, &DirectoryDialog::onNameEdited);
    nameEdit->setText(parts.rest);
    nameEdit->selectAll();
}

void DirectoryDialog::accept() {
    const QString path = getTypedPath();
    if (const QString file = fileInTheWay(path); !file.isEmpty()) {
        refuse(tr("%1 is a file.\nEnter the name of a folder.").arg(QDir::toNativeSeparators(file)));
        return;
    }
    _chosenPath = path;
    QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): the file dialog's own wants a folder that exists
}

void DirectoryDialog::onNameEdited() {
    // QFileDialog disables the button for a folder that does not exist yet
    findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->setEnabled(true);
}

} // namespace Brindle
