#pragma once

#include <QObject>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

/// Makes a widget one that takes a file that is dropped on it, before the window does.
class FileTarget : public QObject {
    Q_OBJECT

public:
    /// Files with the extension, such as ".velmora", are still the window's. The widget owns the object.
    FileTarget(const QString& foreignExtension, QWidget* widget);

    /// That of the widget, or of one around it, which takes these files; null when there is none.
    static FileTarget* find(const QWidget* widget, const QStringList& filenames);

Q_SIGNALS:
    void dropped(const QString& filename);

private:
    const QString _foreignExtension;
};

} // namespace Velmora
