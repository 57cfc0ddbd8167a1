#pragma once

#include <Brindle/widgets/PathDialog.h>

namespace Brindle {

/// Asks for a file to write, see FileDialog::getSaveFileName.
class SaveFileDialog : public PathDialog {
    Q_OBJECT

public:
    SaveFileDialog(QWidget* parent, const QString& caption, const QString& path, const QString& filter);

protected:
    /// Completes the typed name and refuses one whose folder does not exist.
    void accept() override;
};

} // namespace Brindle
