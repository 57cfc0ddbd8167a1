#include <Brindle/PathDialog.h>

#include <QLineEdit>
#include <QMessageBox>

namespace Brindle {

namespace {

constexpr QSize initialSize(760, 480); // pixels

} // namespace

PathDialog::PathDialog(QWidget* parent, const QString& caption, const QString& filter)
    : QFileDialog(parent, caption, QString(), filter) {
    setOption(QFileDialog::DontUseNativeDialog);
    resize(initialSize);
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

void PathDialog::refuse(const QString& reason) {
    QMessageBox::warning(this, windowTitle(), reason);
    getNameEdit()->setFocus();
    getNameEdit()->selectAll();
}

} // namespace Brindle
