#include <Brindle/SaveFileDialog.h>

#include <Brindle/PathParts.h>

#include <QLineEdit>
#include <QRegularExpression>

namespace Brindle {

namespace {

/// The extension of a filter's first pattern: "vhd" of "VHDL (*.vhd)"; empty when it names none.
QString extensionOf(const QString& filter) {
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)"));
    return pattern.match(filter).captured(1);
}

/// True when the name ends in what a user means as an extension: "fir.txt" does, "fir_v1.2" does not.
bool hasExtension(const QString& name) {
    static const QRegularExpression pattern(QStringLiteral("\\.[A-Za-z]\\w*$"));
    return pattern.match(name).hasMatch();
}

} // namespace

SaveFileDialog::SaveFileDialog(QWidget* parent, const QString& caption, const QString& path, const QString& filter)
    : PathDialog(parent, caption, filter) {
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    const PathParts parts = PathParts::split(path);
    setDirectory(parts.folder);
    const QString name = QFileInfo(path).fileName();
    const bool isOnlyExtension = name == QLatin1Char('.') + extensionOf(filter);
    if (!isOnlyExtension)
        selectFile(name);
}

void SaveFileDialog::accept() {
    const QString path = getTypedPath();
    if (getNameEdit()->text().isEmpty() || QFileInfo(path).isDir()) {
        PathDialog::accept();
        return;
    }
    if (const QFileInfo folder(QFileInfo(path).path()); !folder.isDir()) {
        refuse(tr("The folder %1 does not exist.\nChoose another folder, or create it first.")
                   .arg(QDir::toNativeSeparators(folder.filePath())));
        return;
    }
    getNameEdit()->setText(completed(path));
    PathDialog::accept();
}

QString SaveFileDialog::completed(const QString& path) const {
    const QString extension = extensionOf(selectedNameFilter());
    if (extension.isEmpty() || hasExtension(path))
        return path;
    return path.endsWith(QLatin1Char('.')) ? path + extension : path + QLatin1Char('.') + extension;
}

} // namespace Brindle
