#pragma once

#include <QFileDialog>

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE

namespace Brindle {

/// Base of the dialogs that ask for a path: Qt's own dialog on every desktop, in a size that shows all columns.
class PathDialog : public QFileDialog {
    Q_OBJECT

protected:
    PathDialog(QWidget* parent, const QString& caption, const QString& filter);

    /// The field in which the name is typed.
    QLineEdit* getNameEdit() const;
    /// The typed name as an absolute path; a leading "~" stands for the home folder.
    QString getTypedPath() const;
    /// The path with the extension of the chosen filter, if it has none.
    QString getCompletedPath(const QString& path) const;
    /// The extension of a filter's first pattern: "vhd" of "VHDL (*.vhd)"; empty when it names none.
    static QString getExtension(const QString& filter);

    /// Shows the folder that the user means, by its row in the list or else by its typed name; false when none is
    /// meant.
    bool enterFolder();

    /// Tells the user why what was typed cannot be taken, and lets it be typed over.
    void refuse(const QString& reason);

private:
    /// The shown folder's own folder whose row is selected; empty when there is none.
    QString getSelectedFolder() const;
};

} // namespace Brindle
