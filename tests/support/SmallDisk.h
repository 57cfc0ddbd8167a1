#pragma once

#include <QString>

/// A file system of a few KiB in memory, mounted on a new directory. Mounting takes root, in a container often more.
class SmallDisk {
public:
    /// Makes the directory.
    SmallDisk(const QString& path, int kibibytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return _isMounted; }
    bool makeReadOnly();
    QString path() const { return _path; }
    QString path(const QString& relativePath) const { return _path + "/" + relativePath; }

private:
    QString _path;
    bool _isMounted;
};
