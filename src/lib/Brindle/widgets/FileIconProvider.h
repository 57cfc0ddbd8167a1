#pragma once

#include <QFileIconProvider>

namespace Brindle {

/// The icons of folders, files and drives in the file dialogs, drawn as all others of the theme are.
class FileIconProvider : public QFileIconProvider {
public:
    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo& info) const override;
};

} // namespace Brindle
