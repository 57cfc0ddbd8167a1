#pragma once

#include <QPersistentModelIndex>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStringList>
#include <QTreeView>

#include <set>

namespace Velmora {

class IPLeaf;
class IPsLeaf;

/// The tree of the IP browser: IPs below the nodes of their category, filtered by the browser's variant, category and
/// search. A node that a filter brings back is as open as the user left it; a search opens every node.
class IPTreeView : public QTreeView {
    Q_OBJECT

public:
    /// What the items carry beside their text.
    enum Role {
        LeafRole = Qt::UserRole,         ///< `IPLeaf*`; IPs only.
        CategoryRole = Qt::UserRole + 1, ///< Category path down to the item.
        VariantsRole = Qt::UserRole + 2, ///< Variants joined by ","; IPs only.
    };

    explicit IPTreeView(IPsLeaf* parent);

    /// The unfiltered items.
    QStandardItemModel* getModel() const;
    IPsLeaf* getIPsLeaf() const;

    /// Adds the item's row to the selection; the current index stays.
    void select(QStandardItem* item);
    /// Makes the IP with that page the current row; no row when the filters hide it.
    void setCurrentLeaf(const IPLeaf* leaf);
    /// The page of the first IP that the filters show, that of the preferred one if they show it; null when they hide
    /// all.
    IPLeaf* getFirstLeaf(const IPLeaf* preferred) const;

    static const QStringList& getHeaderList();

public Q_SLOTS:
    void invalidateFilter();

private:
    class SortFilterProxyModel;

    void initialize();
    void rememberNode(const QModelIndex& index, bool isClosed);
    void restoreNodes();

    SortFilterProxyModel* _proxy = nullptr;
    std::set<QPersistentModelIndex> _closedNodes; // by the user; in the unfiltered items
};

/// Hides what the browser's filters exclude. Items without the text that a filter looks at pass it; a search also hides
/// the nodes below which it finds nothing.
class IPTreeView::SortFilterProxyModel : public QSortFilterProxyModel {
public:
    explicit SortFilterProxyModel(IPTreeView* view);

    using QSortFilterProxyModel::invalidateFilter;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    bool passesSearch(const QModelIndex& index) const;

    IPTreeView* const _view;
};

} // namespace Velmora
