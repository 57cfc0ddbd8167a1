#pragma once

#include <support/ReadFile.h>

#include <velmora/rules/Configuration.h>

#include <QDir>
#include <QFileInfo>
#include <QTest>

/// The shipped example configurations, one of each IP: the list of the IPs for all tests that go through them.
namespace Examples {

inline QStringList names() {
    QStringList names;
    for (const QString& file : QDir(VELMORA_EXAMPLES).entryList({"*.velmora"}))
        names += QFileInfo(file).baseName();
    return names;
}

/// Makes a row of each example's name in the column "example".
inline void addRows() {
    QTest::addColumn<QString>("example");
    for (const QString& name : names())
        QTest::newRow(qPrintable(name)) << name;
}

inline QString path(const QString& name) {
    return QStringLiteral(VELMORA_EXAMPLES "/%1.velmora").arg(name);
}

inline QByteArray content(const QString& name) {
    return readFile(path(name));
}

inline Velmora::Configuration configuration(const QString& name) {
    return Velmora::Configuration::parse(content(name).toStdString(), name.toStdString());
}

} // namespace Examples
