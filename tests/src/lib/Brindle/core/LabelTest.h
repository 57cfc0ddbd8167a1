#pragma once

#include <QObject>

class LabelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbers_data();
    void numbers();
};
