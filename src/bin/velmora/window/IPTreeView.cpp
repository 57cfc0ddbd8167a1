#include <velmora/window/IPTreeView.h>

#include <velmora/catalogue/IPLeaf.h>

#include <Brindle/widgets/Theme.h>

#include <QItemSelectionModel>
#include <QPainter>
#include <QSignalBlocker>

#include <functional>

namespace Velmora {

namespace {

IPLeaf* leafOf(const QModelIndex& index) {
    return index.data(IPTreeView::LeafRole).value<IPLeaf*>();
}

/// The first row, from top to bottom, with a page that is wanted.
QModelIndex findRow(const QAbstractItemModel& model, const std::function<bool(const IPLeaf*)>& isWanted,
                    const QModelIndex& parent = {}) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const IPLeaf* leaf = leafOf(index);
        const QModelIndex found = leaf && isWanted(leaf) ? index : findRow(model, isWanted, index);
        if (found.isValid())
            return found;
    }
    return {};
}

} // namespace

void IPTreeView::setUp() {
    Brindle::theme.enrich(this);
    _proxy = new SortFilterProxyModel(this);
    _proxy->setSourceModel(new QStandardItemModel(_proxy));
    setModel(_proxy);
    setHeaderHidden(true);
    setUniformRowHeights(true); // which need not be measured one by one
    initialize();
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) { rememberNode(index, true); });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { rememberNode(index, false); });
}

QStandardItemModel* IPTreeView::getModel() const {
    return qobject_cast<QStandardItemModel*>(_proxy->sourceModel());
}

void IPTreeView::select(QStandardItem* item) {
    const QModelIndex index = _proxy->mapFromSource(item->index());
    if (index.isValid())
        selectionModel()->select(index, QItemSelectionModel::Select);
}

void IPTreeView::setCurrentLeaf(const IPLeaf* leaf) {
    const QModelIndex index = findRow(*_proxy, [leaf](const IPLeaf* candidate) { return candidate == leaf; });
    if (index.isValid())
        setCurrentIndex(index);
    else
        selectionModel()->clear();
}

IPLeaf* IPTreeView::getFirstLeaf(const IPLeaf* preferred) const {
    const QModelIndex index = findRow(*_proxy, [preferred](const IPLeaf* candidate) { return candidate == preferred; });
    return leafOf(index.isValid() ? index : findRow(*_proxy, [](const IPLeaf*) { return true; }));
}

const QStringList& IPTreeView::getHeaderList() {
    static const QStringList headers{QStringLiteral("Input")};
    return headers;
}

void IPTreeView::setFilter(const Filter& filter) {
    _proxy->setFilter(filter);
    restoreNodes();
}

void IPTreeView::invalidateFilter() {
    _proxy->invalidateFilter();
    restoreNodes();
}

void IPTreeView::rememberNode(const QModelIndex& index, bool isClosed) {
    if (_proxy->isSearching())
        return;
    const QPersistentModelIndex node = _proxy->mapToSource(index);
    if (isClosed)
        _closedNodes.insert(node);
    else
        _closedNodes.erase(node);
}

void IPTreeView::restoreNodes() {
    const QSignalBlocker blocker(this);
    expandAll();
    if (_proxy->isSearching())
        return;
    for (const QPersistentModelIndex& node : _closedNodes)
        collapse(_proxy->mapFromSource(node));
}

void IPTreeView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (_proxy->rowCount() > 0)
        return;
    const bool isEmptyCatalogue = getModel()->rowCount() == 0;
    QPainter painter(viewport());
    painter.setPen(Brindle::theme.getColor("muted"));
    painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignHCenter | Qt::TextWordWrap,
                     isEmptyCatalogue ? tr("No IP is installed.")
                                      : tr("No IP matches. Search for another word, or choose All in the boxes."));
}

// Constant for the view, but not for who looks at it.
void IPTreeView::initialize() { // NOLINT(readability-make-member-function-const)
    for (int row = 0; row < getModel()->rowCount(); ++row)
        getModel()->item(row)->setText(QString());
}

void IPTreeView::SortFilterProxyModel::setFilter(const Filter& filter) {
    _filter = filter;
    invalidateFilter();
}

bool IPTreeView::SortFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const {
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const QString variants = index.data(VariantsRole).toString();
    const QString category = index.data(CategoryRole).toString();
    return (_filter.variant.isEmpty() || variants.isEmpty() || variants.contains(_filter.variant)) &&
           (_filter.category.isEmpty() || category.isEmpty() || category.startsWith(_filter.category)) &&
           passesSearch(index);
}

bool IPTreeView::SortFilterProxyModel::passesSearch(const QModelIndex& index) const {
    if (!isSearching())
        return true;
    if (const IPLeaf* leaf = leafOf(index))
        return leaf->isFoundBy(_filter.text);
    for (int row = 0; row < sourceModel()->rowCount(index); ++row) {
        if (filterAcceptsRow(row, index))
            return true;
    }
    return false;
}

} // namespace Velmora
