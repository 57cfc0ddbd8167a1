#include <velmora/IPTreeView.h>

#include <velmora/IPsLeaf.h>

#include <Brindle/Theme.h>

#include <QItemSelectionModel>

namespace Velmora {

IPTreeView::IPTreeView(IPsLeaf* parent) : QTreeView(parent) {
    Brindle::theme.enrich(this);
    _proxy = new SortFilterProxyModel(this);
    _proxy->setSourceModel(new QStandardItemModel(_proxy));
    setModel(_proxy);
    setHeaderHidden(true);
    initialize();
}

QStandardItemModel* IPTreeView::getModel() const {
    return qobject_cast<QStandardItemModel*>(_proxy->sourceModel());
}

IPsLeaf* IPTreeView::getIPsLeaf() const {
    return dynamic_cast<IPsLeaf*>(parent());
}

void IPTreeView::select(QStandardItem* item) {
    const QModelIndex index = _proxy->mapFromSource(item->index());
    if (index.isValid())
        selectionModel()->select(index, QItemSelectionModel::Select);
}

const QStringList& IPTreeView::getHeaderList() {
    static const QStringList headers{QStringLiteral("Input")};
    return headers;
}

void IPTreeView::invalidateFilter() {
    _proxy->invalidateFilter();
}

// Constant for the view, but not for who looks at it.
void IPTreeView::initialize() { // NOLINT(readability-make-member-function-const)
    for (int row = 0; row < getModel()->rowCount(); ++row)
        getModel()->item(row)->setText(QString());
}

IPTreeView::SortFilterProxyModel::SortFilterProxyModel(IPTreeView* view) : QSortFilterProxyModel(view), _view(view) {}

bool IPTreeView::SortFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const {
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const IPsLeaf* browser = _view->getIPsLeaf();
    const QString variants = index.data(VariantsRole).toString();
    const QString category = index.data(CategoryRole).toString();
    const QString wantedVariant = browser->getVariantFilter();
    const QString wantedCategory = browser->getCategoryFilter();
    return (wantedVariant.isEmpty() || variants.isEmpty() || variants.contains(wantedVariant)) &&
           (wantedCategory.isEmpty() || category.isEmpty() || category.startsWith(wantedCategory));
}

} // namespace Velmora
