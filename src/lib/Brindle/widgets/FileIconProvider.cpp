#include <Brindle/widgets/FileIconProvider.h>

#include <Brindle/widgets/Theme.h>

#include <QFileInfo>

namespace Brindle {

QIcon FileIconProvider::icon(IconType type) const {
    switch (type) {
    case Computer:
    case Desktop:
    case Network:
        return theme.getIcon("computer");
    case Drive:
        return theme.getIcon("drive");
    case Folder:
    case Trashcan:
        return theme.getIcon("folder");
    case File:
        break;
    }
    return theme.getIcon("file");
}

QIcon FileIconProvider::icon(const QFileInfo& info) const {
    if (info.isRoot())
        return icon(Drive);
    return icon(info.isDir() ? Folder : File);
}

} // namespace Brindle
