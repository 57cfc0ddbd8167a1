#include <velmora/widgets/FileDrop.h>

#include <velmora/widgets/FileTarget.h>

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <QWindow>

namespace Velmora {

namespace {

QStringList getFilenames(const QMimeData& data) {
    QStringList filenames;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            filenames += url.toLocalFile();
    }
    return filenames;
}

bool isDrag(const QEvent& event) {
    return event.type() == QEvent::DragEnter || event.type() == QEvent::DragMove || event.type() == QEvent::Drop;
}

} // namespace

FileDrop::FileDrop(QWidget* window) : QObject(window), _window(window) {
    window->setAcceptDrops(true);
    window->installEventFilter(this);
    window->windowHandle()->installEventFilter(this); // which hands drags to the fields before the window
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
    if (!isDrag(*event) || QApplication::activeModalWidget())
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    const QStringList filenames = getFilenames(*drop->mimeData());
    if (filenames.isEmpty())
        return QObject::eventFilter(watched, event);
    drop->setDropAction(Qt::CopyAction); // or the sender might remove the file
    drop->accept();
    if (event->type() != QEvent::Drop)
        return true;
    if (FileTarget* target = FileTarget::find(_window->childAt(drop->pos()), filenames))
        Q_EMIT target->dropped(filenames.first());
    else
        Q_EMIT dropped(filenames);
    return true;
}

} // namespace Velmora
