#pragma once

#include <velmora/tables/LineTableView.h>

namespace Velmora {

class StartupScopeLeaf;
class TriggerForm;

/// The table in which each trigger line of the startup scope is given a name to know it by and the level that it
/// triggers on.
class StartupTriggerTableView : public LineTableView {
    Q_OBJECT

public:
    /// The form, whose editor of the line count must exist, is kept, not owned.
    explicit StartupTriggerTableView(StartupScopeLeaf* leaf);

    static const QStringList& getHeaderList();

    /// The levels, "0" or "1", of the visible rows.
    QStringList getTriggerValueList() const;

private:
    class SortFilterProxyModel;
    class TableViewDelegate;

    explicit StartupTriggerTableView(const TriggerForm& form);

    const TriggerForm& _form;
};

} // namespace Velmora
