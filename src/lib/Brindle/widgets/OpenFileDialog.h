#pragma once

#include <Brindle/widgets/PathDialog.h>

namespace Brindle {

/// Asks for a file to read, see FileDialog::getOpenFileName.
class OpenFileDialog : public PathDialog {
    Q_OBJECT

public:
    OpenFileDialog(QWidget* parent, const QString& caption, const QString& path, const QString& filter);

protected:
    /// Completes the name of a file that exists only with the extension.
    void accept() override;
};

} // namespace Brindle
