#pragma once

#include <velmora/LineCountProxyModel.h>
#include <velmora/LineTableDelegate.h>
#include <velmora/LineTableModel.h>

#include <QTableView>

namespace Velmora {

/// Makes the view a table of lines: rows 24 pixels high without numbers, the last column as wide as it can be, arrows
/// to move, typing, F2 or a click on the current cell to edit, Tab to leave. The view takes the proxy and the delegate,
/// its children, and the proxy takes the model.
void setUpLineTable(QTableView* view, LineTableModel* model, LineCountProxyModel* proxy, LineTableDelegate* delegate);

} // namespace Velmora
