#pragma once

#include <velmora/tables/LineTableView.h>

namespace Velmora {

class ScopeLeaf;

/// The table in which each trigger line of the scope is given a name to know it by and the values that it triggers on.
class TriggerTableView : public LineTableView {
    Q_OBJECT

public:
    /// The form, whose editor of the line count must exist, is kept, not owned.
    explicit TriggerTableView(ScopeLeaf* leaf);

    ScopeLeaf* getLeaf() const { return _leaf; }
    static const QStringList& getHeaderList();

    /// The values of the visible rows.
    QStringList getTriggerValueList() const;
    /// The values of the first level in the visible rows.
    QStringList getFirstTriggerValueList() const;

private:
    class SortFilterProxyModel;
    class TableViewDelegate;

    ScopeLeaf* const _leaf;
};

} // namespace Velmora
