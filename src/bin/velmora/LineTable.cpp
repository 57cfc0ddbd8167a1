#include <velmora/LineTable.h>

#include <Brindle/Theme.h>

#include <QHeaderView>

namespace Velmora {

namespace {

constexpr int rowHeight = 24;    // pixels
constexpr int leastHeight = 224; // pixels; the header and eight rows

} // namespace

void setUpLineTable(QTableView* view, LineTableModel* model, LineCountProxyModel* proxy, LineTableDelegate* delegate) {
    model->setParent(proxy);
    proxy->setSourceModel(model);
    view->setModel(proxy);
    view->setItemDelegate(delegate);
    Brindle::theme.enrich(view);

    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                          QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    view->setTabKeyNavigation(false);
    view->verticalHeader()->hide();
    view->verticalHeader()->setMinimumSectionSize(rowHeight); // the font's height would be the least otherwise
    view->verticalHeader()->setDefaultSectionSize(rowHeight);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setMinimumHeight(leastHeight);
}

} // namespace Velmora
