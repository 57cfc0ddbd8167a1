#pragma once

#include <velmora/tables/LineTableView.h>

namespace Velmora {

class LocationForm;
class SERDESLeaf;

/// The table in which each SER or DES line is placed on a pad; SER lines are also given a delay.
class LocationTableView : public LineTableView {
    Q_OBJECT

public:
    enum Mode { SER, DES };

    /// The form, whose editors of the line counts must exist, is kept, not owned.
    LocationTableView(Mode mode, SERDESLeaf* leaf);

    bool isSER() const { return _mode == SER; }
    bool isDES() const { return _mode == DES; }

    static QStringList getHeaderList(Mode mode);

    /// The pads of the visible rows; empty texts where none is chosen.
    QStringList getLocationList() const;
    /// The cells that hold them.
    std::vector<QStandardItem*> getLocationCells() const;
    /// The output delays of the visible rows, with two digits; none in DES mode, which has no such column.
    QStringList getOutputDelayList() const;

private:
    class SortFilterProxyModel;
    class TableViewDelegate;

    LocationTableView(Mode mode, const LocationForm& form);
    /// Places the visible lines that have no pad.
    void assignFreePads();

    const Mode _mode;
    const LocationForm& _form;
};

} // namespace Velmora
