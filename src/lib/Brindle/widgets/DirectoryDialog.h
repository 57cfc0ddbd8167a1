#pragma once

#include <Brindle/widgets/PathDialog.h>

namespace Brindle {

/// Asks for a folder that need not exist yet, see FileDialog::getDirectory.
class DirectoryDialog : public PathDialog {
    Q_OBJECT

public:
    DirectoryDialog(QWidget* parent, const QString& caption, const QString& path);

    /// The accepted folder's absolute path; empty before.
    const QString& getChosenPath() const { return _chosenPath; }

protected:
    /// Accepts a new folder and refuses what is, or lies below, a file.
    void accept() override;

private Q_SLOTS:
    void onNameEdited();

private:
    QString _chosenPath;
};

} // namespace Brindle
