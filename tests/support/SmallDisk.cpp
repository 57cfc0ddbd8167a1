#include <support/SmallDisk.h>

#include <QDir>
#include <QFile>

#include <sys/mount.h>

SmallDisk::SmallDisk(const QString& path, int kibibytes) : _path(path) {
    QDir().mkpath(path);
    const QByteArray options = QStringLiteral("size=%1k").arg(kibibytes).toLatin1();
    _isMounted = mount("tmpfs", QFile::encodeName(_path).constData(), "tmpfs", 0, options.constData()) == 0;
}

SmallDisk::~SmallDisk() {
    if (_isMounted)
        umount2(QFile::encodeName(_path).constData(), MNT_DETACH);
}

bool SmallDisk::makeReadOnly() {
    return mount(nullptr, QFile::encodeName(_path).constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}
