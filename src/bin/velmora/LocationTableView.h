#pragma once

#include <QStandardItemModel>
#include <QStringList>
#include <QTableView>

namespace Velmora {

class LineTableModel;
class SERDESLeaf;

/// The table in which each SER or DES line is placed on a pad; SER lines are also given a delay. A row stays filled in
/// while the form counts too few lines to show it.
class LocationTableView : public QTableView {
    Q_OBJECT

public:
    enum Mode { SER, DES };

    /// The form, whose editors of the line counts must exist, is kept, not owned.
    LocationTableView(Mode mode, SERDESLeaf* leaf);

    bool isSER() const { return _mode == SER; }
    bool isDES() const { return _mode == DES; }
    SERDESLeaf* getLeaf() const { return _leaf; }

    /// All rows, the hidden ones too.
    QStandardItemModel* getModel() const;
    /// Number of visible rows.
    int getRowCount() const;
    static QStringList getHeaderList(Mode mode);

    /// The pads of the visible rows; empty texts where none is chosen.
    QStringList getLocationList() const;
    /// The output delays of the visible rows, with two digits; none in DES mode, which has no such column.
    QStringList getOutputDelayList() const;

    /// Takes every pad away and puts every delay to 0.
    void initialize();
    void load();
    void save() const;

public Q_SLOTS:
    /// Shows as many rows as the form now counts lines.
    void invalidateFilter();

private:
    class SortFilterProxyModel;
    class TableViewDelegate;

    QString getGroup() const;

    const Mode _mode;
    SERDESLeaf* const _leaf;
    LineTableModel* const _model;
    SortFilterProxyModel* _proxy = nullptr;
};

} // namespace Velmora
