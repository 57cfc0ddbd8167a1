#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// The bytes of a file; null when it cannot be read.
inline QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
