#pragma once

#include <QObject>

class TreeComboBoxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void clickInThePopupChooses();
    void branchesAreOpen();
};
