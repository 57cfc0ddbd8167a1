#include <velmora/widgets/FileTarget.h>

#include <QWidget>

namespace Velmora {

FileTarget::FileTarget(const QString& foreignExtension, QWidget* widget)
    : QObject(widget), _foreignExtension(foreignExtension) {}

FileTarget* FileTarget::find(const QWidget* widget, const QStringList& filenames) {
    if (filenames.size() != 1)
        return nullptr;
    for (; widget; widget = widget->parentWidget()) {
        auto* target = widget->findChild<FileTarget*>(QString(), Qt::FindDirectChildrenOnly);
        if (target && widget->isEnabled() && !filenames.first().endsWith(target->_foreignExtension))
            return target;
    }
    return nullptr;
}

} // namespace Velmora
