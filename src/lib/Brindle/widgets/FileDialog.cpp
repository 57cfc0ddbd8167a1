#include <Brindle/widgets/FileDialog.h>

#include <Brindle/widgets/DirectoryDialog.h>
#include <Brindle/widgets/OpenFileDialog.h>
#include <Brindle/widgets/SaveFileDialog.h>

namespace Brindle {

namespace {

FileDialog::SaveFileNameFunction saveFileNameFunction;
FileDialog::OpenFileNameFunction openFileNameFunction;
FileDialog::DirectoryFunction directoryFunction;

} // namespace

QString FileDialog::getSaveFileName(QWidget* parent, const QString& caption, const QString& path,
                                    const QString& filter) {
    if (saveFileNameFunction)
        return saveFileNameFunction(parent, caption, path, filter);
    SaveFileDialog dialog(parent, caption, path, filter);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().constFirst() : QString();
}

QString FileDialog::getOpenFileName(QWidget* parent, const QString& caption, const QString& path,
                                    const QString& filter) {
    if (openFileNameFunction)
        return openFileNameFunction(parent, caption, path, filter);
    OpenFileDialog dialog(parent, caption, path, filter);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().constFirst() : QString();
}

QString FileDialog::getDirectory(QWidget* parent, const QString& caption, const QString& path) {
    if (directoryFunction)
        return directoryFunction(parent, caption, path);
    DirectoryDialog dialog(parent, caption, path);
    return dialog.exec() == QDialog::Accepted ? dialog.getChosenPath() : QString();
}

void FileDialog::setSaveFileNameFunction(SaveFileNameFunction function) {
    saveFileNameFunction = std::move(function);
}

void FileDialog::setOpenFileNameFunction(OpenFileNameFunction function) {
    openFileNameFunction = std::move(function);
}

void FileDialog::setDirectoryFunction(DirectoryFunction function) {
    directoryFunction = std::move(function);
}

} // namespace Brindle
