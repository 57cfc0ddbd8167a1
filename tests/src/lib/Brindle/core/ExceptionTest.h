#pragma once

#include <QObject>

class ExceptionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void kindIsKept_data();
    void kindIsKept();
    void fields();
    void location();
};
