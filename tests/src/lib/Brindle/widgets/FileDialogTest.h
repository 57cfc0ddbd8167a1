#pragma once

#include <QObject>
#include <QTemporaryDir>

class FileDialogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void save_data();
    void save();
    void open_data();
    void open();
    void columnsShowWhole();
    void directory_data();
    void directory();
    void functionsReplaceDialogs();

private:
    QTemporaryDir _folder;
};
