#pragma once

#include <velmora/tables/LineTableView.h>

namespace Velmora {

class ScopeLeaf;
class TriggerForm;

/// The table in which each trigger line of the scope is given a name to know it by and the values that it triggers on.
class TriggerTableView : public LineTableView {
    Q_OBJECT

public:
    /// The form, whose editor of the line count must exist, is kept, not owned.
    explicit TriggerTableView(ScopeLeaf* leaf);

    static const QStringList& getHeaderList();

    /// The values of the visible rows.
    QStringList getTriggerValueList() const;
    /// The values of the first level in the visible rows.
    QStringList getFirstTriggerValueList() const;
    /// The cells of visible rows whose value the trigger mode does not know, such as an edge without edges.
    std::vector<QStandardItem*> getUnsupportedCells() const;

private:
    class SortFilterProxyModel;
    class TableViewDelegate;

    explicit TriggerTableView(const TriggerForm& form);
    bool isUnsupported(int row, int column) const;

    const TriggerForm& _form;
};

} // namespace Velmora
