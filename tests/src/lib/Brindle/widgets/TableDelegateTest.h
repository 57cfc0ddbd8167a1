#pragma once

#include <QObject>
#include <QStandardItemModel>
#include <QTableView>

#include <memory>

class TableDelegateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keysMoveAsInASpreadsheet_data();
    void keysMoveAsInASpreadsheet();
    void choiceIsKeptAtOnce();

private:
    QWidget* openEditor(int row, int column);

    std::unique_ptr<QTableView> _view;
    QStandardItemModel* _model = nullptr;
};
